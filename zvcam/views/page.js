'use strict';
// Filters the rows of the tables by the search box. What is searched for stands in the address: "#q=fuseID&in=property".
(() => {
  const form = document.getElementById('search');
  const box = document.getElementById('q');
  const kind = document.getElementById('in');
  const hits = document.getElementById('hits');
  const tables = [...document.querySelectorAll('table[data-kind]')].map(table => ({
    table,
    kind: table.dataset.kind,
    rows: [...table.tBodies[0].rows].map(row => ({row, text: row.textContent.toLowerCase()})),
  }));
  const total = tables.reduce((sum, each) => sum + each.rows.length, 0);
  if (total === 0) {
    return;
  }

  // The state that the address holds; any other fragment is the id of a place on the page.
  const state = () => {
    const fragment = location.hash.slice(1);
    return new URLSearchParams(fragment.includes('=') ? fragment : '');
  };

  const filter = () => {
    const terms = box.value.toLowerCase().split(/\s+/).filter(term => term !== '');
    const searching = terms.length > 0 || kind.value !== 'all';
    let shown = 0;
    for (const each of tables) {
      let here = 0;
      const open = kind.value === 'all' || kind.value === each.kind;
      for (const {row, text} of each.rows) {
        const hit = open && terms.every(term => text.includes(term));
        row.hidden = !hit;
        here += hit ? 1 : 0;
      }
      each.table.parentElement.hidden = here === 0;
      shown += here;
    }
    document.documentElement.classList.toggle('searching', searching);
    for (const section of document.querySelectorAll('main > section')) {
      section.hidden = searching && !section.querySelector('table[data-kind] > tbody > tr:not([hidden])');
    }
    hits.value = searching ? `${shown} of ${total} rows` : `${total} rows`;
  };

  const remember = () => {
    const wanted = state();
    const put = (name, value) => value === '' ? wanted.delete(name) : wanted.set(name, value);
    put('q', box.value.trim());
    put('in', kind.value === 'all' ? '' : kind.value);
    const text = wanted.toString();
    history.replaceState(null, '', text === '' ? location.pathname + location.search : '#' + text);
  };

  const recall = () => {
    box.value = state().get('q') ?? '';
    kind.value = state().get('in') ?? 'all';
    if (kind.selectedIndex < 0) {
      kind.value = 'all';
    }
    filter();
    if (document.documentElement.classList.contains('searching')) {
      scrollTo(0, 0);
    } else {
      document.getElementById(location.hash.slice(1))?.scrollIntoView();
    }
  };

  const changed = () => {
    remember();
    filter();
    scrollTo(0, 0);
  };
  box.addEventListener('input', changed);
  kind.addEventListener('change', changed);
  form.addEventListener('submit', event => event.preventDefault());
  addEventListener('hashchange', recall);
  addEventListener('keydown', event => {
    if (event.key === '/' && !event.ctrlKey && !event.metaKey && !event.altKey && !/^(input|select|textarea)$/i.test(event.target.tagName)) {
      event.preventDefault();
      box.focus();
      box.select();
    }
  });
  form.hidden = false;
  recall();
})();

// On paper nothing stays folded.
(() => {
  let folded = [];
  addEventListener('beforeprint', () => {
    folded = [...document.querySelectorAll('details:not([open])')];
    folded.forEach(details => { details.open = true; });
  });
  addEventListener('afterprint', () => folded.forEach(details => { details.open = false; }));
})();

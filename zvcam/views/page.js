'use strict';
// Filters the tables, names the bytes of pictures, unfolds for the printer. It computes nothing.

// The state that the address holds, "#q=fuseID&in=property"; any other fragment is the id of a place on the page.
const state = () => {
  const fragment = location.hash.slice(1);
  return new URLSearchParams(fragment.includes('=') ? fragment : '');
};

// Browsers refuse an address that changes with every key, so it follows when the keys rest.
const remember = (() => {
  let changes = {};
  let timer = 0;
  const store = () => {
    const wanted = state();
    for (const [name, value] of Object.entries(changes)) {
      value === '' ? wanted.delete(name) : wanted.set(name, value);
    }
    const text = wanted.toString().replaceAll('%3A', ':');
    history.replaceState(null, '', text === '' ? location.pathname + location.search : '#' + text);
    changes = {};
  };
  return values => {
    Object.assign(changes, values);
    clearTimeout(timer);
    timer = setTimeout(store, 150);
  };
})();

// The search box filters the rows of the tables.
(() => {
  const form = document.getElementById('search');
  const box = document.getElementById('q');
  const kind = document.getElementById('in');
  const hits = document.getElementById('hits');
  const tables = [...document.querySelectorAll('table[data-kind]')].map(table => ({
    table,
    rows: [...table.tBodies[0].rows].map(row => ({
      row,
      text: row.textContent.toLowerCase(),
      kinds: [table.dataset.kind, ...(row.dataset.kind ?? '').split(' ')],
    })),
  }));
  const total = tables.reduce((sum, each) => sum + each.rows.length, 0);
  if (total === 0) {
    return;
  }

  const filter = () => {
    const terms = box.value.toLowerCase().split(/\s+/).filter(term => term !== '');
    const searching = terms.length > 0 || kind.value !== 'all';
    let shown = 0;
    for (const each of tables) {
      let here = 0;
      for (const {row, text, kinds} of each.rows) {
        const hit = (kind.value === 'all' || kinds.includes(kind.value)) && terms.every(term => text.includes(term));
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
    remember({q: box.value.trim(), in: kind.value === 'all' ? '' : kind.value});
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

// The byte under the pointer, or under the cursor that the arrow keys move, is named below its picture.
for (const figure of document.querySelectorAll('figure[data-bytes]')) {
  const side = 128;
  const bytes = figure.dataset.bytes;
  const count = bytes.length / 2;
  const picture = figure.querySelector('.picture');
  const svg = figure.querySelector('svg');
  const cursor = svg.querySelector('.cursor');
  const output = figure.querySelector('output');
  const ranges = [...figure.parentElement.querySelectorAll('tr[data-first]')].map(row => ({
    row, first: Number(row.dataset.first), last: Number(row.dataset.last),
  }));
  let at = 0;

  const hex = (number, digits) => '0x' + number.toString(16).toUpperCase().padStart(digits, '0');
  const describe = offset => {
    const of = ranges.filter(range => range.first <= offset && offset <= range.last).map(range => range.row.dataset.name);
    return `${hex(offset, 4)} is 0x${bytes.substr(2 * offset, 2)}: ${of.join(', ') || 'nothing that is read'}`;
  };
  const show = offset => {
    output.value = describe(offset);
    for (const {row, first, last} of ranges) {
      row.classList.toggle('here', first <= offset && offset <= last);
    }
  };
  const move = offset => {
    at = Math.min(Math.max(offset, 0), count - 1);
    cursor.setAttribute('x', at % side);
    cursor.setAttribute('y', Math.floor(at / side));
    picture.setAttribute('aria-valuenow', at);
    picture.setAttribute('aria-valuetext', describe(at));
    show(at);
  };
  const under = event => {
    const point = new DOMPoint(event.clientX, event.clientY).matrixTransform(svg.getScreenCTM().inverse());
    const [x, y] = [Math.floor(point.x), Math.floor(point.y)];
    return x >= 0 && x < side && y >= 0 && y < count / side ? y * side + x : -1;
  };
  const choose = offset => {
    move(offset);
    remember({byte: `${figure.dataset.module}:${hex(at, 4).slice(2)}`});
  };

  picture.tabIndex = 0;
  for (const [name, value] of Object.entries({
    role: 'slider', 'aria-label': svg.getAttribute('aria-label'), 'aria-valuemin': 0, 'aria-valuemax': count - 1,
  })) {
    picture.setAttribute(name, value);
  }
  picture.addEventListener('pointermove', event => show(under(event) < 0 ? at : under(event)));
  picture.addEventListener('pointerleave', () => show(at));
  picture.addEventListener('click', event => under(event) >= 0 && choose(under(event)));
  picture.addEventListener('keydown', event => {
    const row = at - at % side;
    const target = {
      ArrowLeft: at - 1, ArrowRight: at + 1, ArrowUp: at - side, ArrowDown: at + side,
      PageUp: at - 8 * side, PageDown: at + 8 * side,
      Home: event.ctrlKey ? 0 : row, End: event.ctrlKey ? count - 1 : row + side - 1,
    }[event.key];
    if (target !== undefined && !event.altKey && !event.metaKey) {
      event.preventDefault();
      choose(target);
    }
  });
  const recall = () => {
    const [module, offset] = (state().get('byte') ?? '').split(':');
    if (module === figure.dataset.module) {
      move(parseInt(offset, 16) || 0);
      figure.parentElement.scrollIntoView();
      picture.focus({preventScroll: true});
    }
  };
  addEventListener('hashchange', recall);
  move(0);
  recall();
}

// On paper nothing stays folded but long lists.
(() => {
  let folded = [];
  addEventListener('beforeprint', () => {
    folded = [...document.querySelectorAll('details:not([open], .long)')];
    folded.forEach(details => { details.open = true; });
  });
  addEventListener('afterprint', () => folded.forEach(details => { details.open = false; }));
})();

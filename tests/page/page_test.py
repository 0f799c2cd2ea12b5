"""Drives the pages of `zvcam run --html` in a real browser: page_test.py ZVCAM PHONES [SCREENSHOTS]."""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

from selenium.webdriver.common.keys import Keys

from browser import Browser

ZVCAM, PHONES = sys.argv[1:3]
SCREENSHOTS = sys.argv[3] if len(sys.argv) > 3 else None
if SCREENSHOTS:
    pathlib.Path(SCREENSHOTS).mkdir(parents=True, exist_ok=True)
HOSTILE = "</td></script><script>document.title='taken'</script><img src=x onerror=\"document.title='taken'\">'\"&"


def setUpModule():
    global browser, folder, pages
    folder = tempfile.TemporaryDirectory()
    pages = {name: make_page(f"{PHONES}/{name}.json", name) for name in ("halcyrion", "fieldtrouble")}
    browser = Browser()


def tearDownModule():
    browser.quit()
    folder.cleanup()


def make_page(source, name):
    page = pathlib.Path(folder.name) / f"{name}.html"
    subprocess.run([ZVCAM, "run", source, "--html", page], check=False,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return page


def report_of(name):
    return json.loads(subprocess.run([ZVCAM, "run", f"{PHONES}/{name}.json", "--json", "-"],
                                     check=True, capture_output=True).stdout)


class EveryPage(unittest.TestCase):
    def test_is_small_and_needs_nothing_else(self):
        for name, page in pages.items():
            with self.subTest(name):
                self.assertLess(page.stat().st_size, 2_000_000)
                browser.open(page)
                self.assertEqual(browser.complaints(), [])
                self.assertEqual(browser.requests(), [])
                self.assertEqual(browser.one("h1").text, name)

    def test_holds_at_every_width_and_in_both_schemes(self):
        for name, page in pages.items():
            browser.open(page)
            for width in (1280, 400):
                for scheme in ("light", "dark"):
                    with self.subTest(name=name, width=width, scheme=scheme):
                        browser.size(width)
                        browser.emulate(scheme)
                        self.assertLessEqual(browser.overhang(), 0)
                        self.assertEqual(browser.cut_tables(".stacked"), [])
                        seen, poor = browser.poor_contrast()
                        self.assertGreater(seen, 30)
                        self.assertEqual(poor, [])
                        if SCREENSHOTS:
                            self.take_screenshots(name, width, scheme)
        browser.size(1280)
        browser.emulate()

    @staticmethod
    def take_screenshots(name, width, scheme):
        for section in ("", "#memories", "#streams", "#timeline", "#properties"):
            browser.run("location.hash = arguments[0]; document.querySelector(arguments[0] || 'h1').scrollIntoView()", section)
            browser.screenshot(f"{SCREENSHOTS}/{name}-{width}-{scheme}{section.replace('#', '-')}.png")

    def test_has_one_heading_a_section_and_no_id_twice(self):
        for name, page in pages.items():
            with self.subTest(name):
                browser.open(page)
                self.assertEqual(browser.run(
                    "const ids = [...document.querySelectorAll('[id]')].map(e => e.id);"
                    "return ids.filter((id, at) => ids.indexOf(id) !== at)"), [])
                self.assertEqual(browser.run(
                    "return [...document.querySelectorAll('a[href^=\"#\"]')].map(a => a.getAttribute('href'))"
                    ".filter(href => !href.includes('=') && !document.getElementById(href.slice(1)))"), [])
                self.assertEqual(browser.shown("nav a"), browser.shown("main h2"))
                self.assertEqual(browser.run(
                    "return [...document.querySelectorAll('th:not([scope])')].length"), 0)


class Search(unittest.TestCase):
    def setUp(self):
        browser.open(pages["halcyrion"])

    def test_finds_as_one_types_and_keeps_it_in_the_address(self):
        browser.one("body").send_keys("/")
        browser.one("#q").send_keys("fuseid W.")
        self.assertEqual(browser.fragment(), "#q=fuseid+W.")
        self.assertEqual([row.split()[0] for row in browser.shown("#properties tbody tr")],
                         ["vendor.camera.sensor.w.fuseID"])
        self.assertRegex(browser.one("#hits").text, r"^\d+ of \d{4} rows$")
        self.assertEqual(browser.shown("#memories, #streams, main > header"), [])
        browser.one("#q").clear()
        browser.one("#q").send_keys(" ", Keys.BACKSPACE)
        self.assertEqual(browser.fragment(), "")
        self.assertEqual(len(browser.shown("#properties tbody tr")), 24)

    def test_opens_in_the_state_that_a_link_has(self):
        browser.open(pages["halcyrion"], "#q=ROLEID&in=tag")
        self.assertEqual(browser.one("#q").get_attribute("value"), "ROLEID")
        self.assertEqual(browser.shown("main h2"), [browser.one("#tags h2").text])
        rows = browser.shown("#tags tbody tr")
        self.assertEqual(browser.one("#hits").text.split()[0], str(len(rows)))
        self.assertTrue(all("ROLEID" in row for row in rows) and rows)

    def test_shows_what_one_device_has(self):
        browser.one("#devices a[href='#in=device-4-3']").click()
        rows = browser.shown("#tags tbody tr")
        self.assertEqual(len(rows), 20)
        self.assertGreater(len(browser.shown("#log tbody tr")), 50)

    def test_a_finding_leads_to_what_it_is_about(self):
        browser.open(pages["fieldtrouble"], "#finding-1")
        browser.one("#finding-1 td a").click()
        self.assertEqual(browser.fragment(), "#eeprom-back-main")
        self.assertLess(abs(browser.one("#eeprom-back-main").rect["y"] - browser.run("return scrollY")), 200)


class Bytes(unittest.TestCase):
    def test_the_keyboard_reaches_the_cursor_and_the_cursor_every_byte(self):
        browser.open(pages["halcyrion"])
        browser.one("nav a[href='#memories']").send_keys(Keys.ENTER)
        browser.driver.switch_to.active_element.send_keys(Keys.TAB)
        picture = browser.driver.switch_to.active_element
        self.assertEqual(picture.get_attribute("role"), "slider")
        picture.send_keys(Keys.ARROW_RIGHT)
        self.assertEqual(picture.get_attribute("aria-valuetext"), "0x0001 is 0x03: maker")
        picture.send_keys(Keys.CONTROL, Keys.END)
        self.assertEqual(picture.get_attribute("aria-valuenow"), "16383")
        self.assertEqual(browser.fragment(), "#byte=back-main:3FFF")

    def test_a_link_opens_at_its_byte(self):
        browser.open(pages["halcyrion"], "#byte=back-main:20F2")
        self.assertEqual(browser.one("#eeprom-back-main output").text, "0x20F2 is 0x21: OIS, gain X")
        self.assertEqual(browser.shown("tr.here")[1].split("\n")[0].split("\t")[0], "0x20F2 to 0x20F3")

    def test_the_pointer_names_a_byte(self):
        browser.open(pages["fieldtrouble"])
        browser.run("""
            const svg = document.querySelector('#eeprom-back-main svg');
            const at = new DOMPoint(0x788 % 128 + .5, Math.floor(0x788 / 128) + .5).matrixTransform(svg.getScreenCTM());
            svg.dispatchEvent(new PointerEvent('pointermove', {bubbles: true, clientX: at.x, clientY: at.y}));""")
        self.assertEqual(browser.run("return document.querySelector('#eeprom-back-main output').value"),
                         "0x0788 is 0x10: LSC")


class OtherReaders(unittest.TestCase):
    def test_everything_is_there_without_scripts(self):
        browser.scripts(False)
        try:
            browser.open(pages["fieldtrouble"])
            self.assertFalse(browser.one("#search").is_displayed())
            self.assertTrue(browser.one("#finding-1").is_displayed())
            self.assertTrue(browser.one("#log tbody tr:last-child").is_displayed())
        finally:
            browser.scripts(True)

    def test_on_paper_nothing_stays_folded(self):
        browser.open(pages["halcyrion"])
        browser.run("dispatchEvent(new Event('beforeprint'))")
        self.assertEqual(browser.run("return document.querySelectorAll('details:not([open], .long)').length"), 0)
        browser.emulate(media="print")
        self.assertEqual(browser.shown("#search, nav, #log tbody tr:not(.error)"), [])
        browser.emulate()
        browser.run("dispatchEvent(new Event('afterprint'))")
        self.assertEqual(browser.run("return document.querySelectorAll('details[open]').length"), 0)


class OtherPages(unittest.TestCase):
    def zvcam(self, *arguments):
        subprocess.run([pathlib.Path(ZVCAM).resolve(), *arguments], check=True, cwd=folder.name, capture_output=True)

    def holds(self, name):
        browser.open(pathlib.Path(folder.name) / name)
        for width in (1280, 400):
            browser.size(width)
            with self.subTest(width=width):
                self.assertEqual(browser.complaints(), [])
                self.assertLessEqual(browser.overhang(), 0)
                self.assertEqual(browser.cut_tables(), [])
                if SCREENSHOTS:
                    browser.screenshot(f"{SCREENSHOTS}/{name}-{width}.png")
        browser.size(1280)

    def test_of_a_fleet(self):
        self.zvcam("fleet", "make", "--quiet", "--count", "60", "--seed", "1",
                   "--trouble", "lsc=0.2,erased=0.2,layout=0.2,duplicate=0.2", "-o", "fleet")
        self.zvcam("fleet", "run", "fleet", "--quiet", "--db", "fleet.sqlite")
        self.zvcam("fleet", "report", "fleet.sqlite", "--html", "fleet.html")
        self.holds("fleet.html")
        browser.size(400)
        cell = browser.one("#modules td[data-heading='chip']")
        self.assertEqual(browser.run("return getComputedStyle(arguments[0], '::before').content", cell), '"chip: "')
        browser.size(1280)

    def test_of_influence(self):
        self.zvcam("influence", pathlib.Path(PHONES).resolve() / "fieldtrouble.json", "--module", "back_ultra",
                   "--step", "256", "--html", "influence.html")
        self.holds("influence.html")


class OtherPhones(unittest.TestCase):
    def open(self, name, content):
        source = pathlib.Path(folder.name) / f"{name}.json"
        source.write_text(json.dumps(content), encoding="utf-8")
        page = make_page(source, name)
        browser.open(page)
        self.assertEqual(browser.complaints(), [])
        self.assertLessEqual(browser.overhang(), 0)

    def test_without_anything(self):
        self.open("empty", {})
        self.assertEqual(browser.one("h1").text, "A phone without a name")

    def test_with_hostile_texts(self):
        self.open("hostile", {
            "name": HOSTILE,
            "properties": {HOSTILE: "</script>"},
            "logicalDevices": [{"name": HOSTILE}] * 64,
            "files": {"/mnt/vendor/persist/camera/dcal<img src=x onerror=alert(1)>.bin": {"text": HOSTILE}},
        })
        self.assertEqual(browser.one("h1").text, HOSTILE)
        self.assertNotEqual(browser.driver.title, "taken")
        self.assertEqual(browser.run("return document.scripts.length + document.images.length"), 1)
        self.assertEqual(len(browser.shown("#devices tbody tr")), 64)

    def test_whose_boot_ended_in_the_walk(self):
        report = report_of("halcyrion")
        del report["events"][2000:]
        lists = {"property": "properties", "device": "devices", "thirdCalibration": "thirdCalibration",
                 "eepromRead": "eepromReads", "log": "log"}
        for kind, name in lists.items():
            del report[name][sum(kind in event for event in report["events"]):]
        report["ended"] = {"how": "signal", "signal": "SIGSEGV", "step": "MetadataUpdateScaler"}
        self.open("crashed", report)
        self.assertIn("was ended by SIGSEGV in MetadataUpdateScaler", browser.one("[role=alert]").text)
        rows = browser.shown("#timeline tbody tr")
        self.assertRegex(rows[7], "^8 MetadataUpdate ✗.the boot ended here")
        self.assertRegex(rows[-1], "^9 DumpEepromRawData\\s+not reached$")

    def test_of_an_older_report(self):
        report = report_of("halcyrion")
        for key in ("format", "plugin", "ended", "events", "description"):
            del report[key]
        for read in report["eepromReads"]:
            del read["read"]
        self.open("older", report)
        self.assertEqual(len(browser.shown("#properties tbody tr")), 24)
        self.assertIn("does not say", browser.one("#timeline p").text)
        self.assertIn("does not say", browser.one("#memories p").text)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])

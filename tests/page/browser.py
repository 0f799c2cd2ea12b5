"""A headless Chromium that opens pages from disk, and what can be asked of them."""

import os
import pathlib
import time

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By

# What a page must not do is what Chromium itself does at every start: these switch it off.
FLAGS = [
    "--headless=new", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
    "--disable-component-update", "--disable-sync", "--disable-dev-shm-usage", "--hide-scrollbars",
]

# The contrast of text that can be seen, by the formula of WCAG 2, once for elements of the same kind in the same place:
# those below 4.5, and how many were looked at.
POOR_CONTRAST = """
const numbers = colour => colour.match(/[\\d.]+/g).map(Number);
const luminance = ([r, g, b]) => {
  const [x, y, z] = [r, g, b].map(v => v / 255).map(v => v <= 0.04045 ? v / 12.92 : ((v + 0.055) / 1.055) ** 2.4);
  return 0.2126 * x + 0.7152 * y + 0.0722 * z;
};
const ground = element => {
  for (let each = element; each; each = each.parentElement) {
    const colour = numbers(getComputedStyle(each).backgroundColor);
    if (colour.length === 3 || colour[3] > 0) return colour;
  }
  return [255, 255, 255];
};
const poor = new Set();
const seen = new Set();
const kindOf = element => element ? `${element.tagName}.${element.getAttribute('class')}` : '';
for (const element of document.body.querySelectorAll('*')) {
  const own = [...element.childNodes].some(node => node.nodeType === Node.TEXT_NODE && node.data.trim());
  const kind = [element, element.parentElement, element.closest('tr'), element.closest('section')].map(kindOf).join(' ');
  if (!own || seen.has(kind) || !element.checkVisibility()) continue;
  seen.add(kind);
  const style = getComputedStyle(element);
  const colour = numbers(element instanceof SVGElement ? style.fill : style.color);
  const [light, dark] = [luminance(colour), luminance(ground(element))].sort((a, b) => b - a);
  if ((light + 0.05) / (dark + 0.05) < 4.5) {
    poor.add(`${kind}: ${colour} on ${ground(element)}`);
  }
}
return [seen.size, [...poor]];
"""


class Browser:
    """One browser for all tests: a start takes a second."""

    def __init__(self):
        options = webdriver.ChromeOptions()
        for flag in FLAGS:
            options.add_argument(flag)
        if os.geteuid() == 0:
            options.add_argument("--no-sandbox")
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        options.binary_location = "/usr/bin/chromium"
        self.driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        self.size(1280)

    def quit(self):
        self.driver.quit()

    def size(self, width, height=900):
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})

    def emulate(self, scheme="light", media=""):
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "media": media, "features": [{"name": "prefers-color-scheme", "value": scheme}]})

    def scripts(self, enabled):
        self.driver.execute_cdp_cmd("Emulation.setScriptExecutionDisabled", {"value": not enabled})

    def open(self, page, fragment=""):
        self.driver.get("about:blank")
        self.complaints()
        self.driver.get(pathlib.Path(page).resolve().as_uri() + fragment)

    def complaints(self):
        """What the console, which also hears of refused scripts and of requests, was told since it was asked last."""
        return [entry["message"] for entry in self.driver.get_log("browser")]

    def run(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def one(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def shown(self, selector):
        """The texts of the elements that can be seen."""
        return self.run("return [...document.querySelectorAll(arguments[0])].filter(e => e.checkVisibility())"
                        ".map(e => e.innerText.trim())", selector)

    def fragment(self):
        """What the address ends with when it has come to rest."""
        time.sleep(0.3)
        return self.run("return location.hash")

    def overhang(self):
        """Pixels by which the page is wider than its window."""
        return self.run("return document.documentElement.scrollWidth - innerWidth")

    def cut_tables(self, kind="*"):
        """Captions of the tables of a kind of which a part is beyond their box."""
        return self.run("return [...document.querySelectorAll('.wide')]"
                        ".filter(box => box.scrollWidth > box.clientWidth && box.querySelector(':scope > ' + arguments[0]))"
                        ".map(box => box.getAttribute('aria-label'))", kind)

    def poor_contrast(self):
        return self.run(POOR_CONTRAST)

    def screenshot(self, file):
        self.driver.save_screenshot(str(file))

    def requests(self):
        """Addresses that the page asked for, itself left out."""
        return self.run("return performance.getEntriesByType('resource').map(entry => entry.name)")

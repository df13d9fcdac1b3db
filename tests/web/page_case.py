"""What the tests of report pages share: pages that the program makes, and a browser to open them in."""
import atexit
import functools
import json
import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By

import parts

PROGRAM = os.environ["TESK_ORIENT"]
AXE = Path(os.environ["AXE"])
HOSTILE = "<img src=x onerror=document.title='caught'>\"'&amp;</script><script>document.title='caught'</script>"
SIZES = [(1440, 1000), (800, 1000), (360, 740)]
SCRATCH = tempfile.TemporaryDirectory()
DATA = re.compile(r'(?<=<script type="application/json" id="data">).*?(?=</script>)', re.S)


def page_of(part, *options):
    page = part.with_suffix(".html")
    subprocess.run([PROGRAM, "orient", part, "-q", "--report", page, *options], check=True, stdout=subprocess.DEVNULL)
    return page


def make_page(name, triangles, *options):
    part = Path(SCRATCH.name, name)
    parts.write_stl(part, triangles)
    return page_of(part, *options)


def data_of(page):
    return json.loads(DATA.search(page.read_text()).group())


@functools.cache
def table():
    return make_page("table.stl", parts.table())


@functools.cache
def sheet():
    return make_page("sheet.stl", parts.box(180, 120, 0.8))


@functools.cache
def broken():
    return make_page("broken.stl", parts.table()[:-3])


@functools.cache
def large():
    return make_page("large.stl", parts.rippled_ball(360))


@functools.cache
def plate():
    """Three objects: one with markup for a name, the last with a hole and upon the one before."""
    path = Path(SCRATCH.name, "plate.3mf")
    parts.write_plate(path, [(HOSTILE, HOSTILE, parts.table(), [(20, 20), (120, 20), (220, 20)]),
                             ("Sheet", "", parts.box(180, 120, 0.8), [(20, 120)]),
                             ("", "", parts.table()[:-3], [(40, 140)])])
    return page_of(path)


def start_browser(*switches):
    options = Options()
    for switch in ("--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--use-gl=angle",
                   "--use-angle=swiftshader", "--enable-unsafe-swiftshader", *switches):
        options.add_argument(switch)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


@functools.cache
def shared_browser():
    browser = start_browser()
    atexit.register(browser.quit)
    return browser


class PageCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.browser = shared_browser()

    def setUp(self):
        self.resize(*SIZES[0])

    def resize(self, width, height):
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})


    def open(self, page):
        for log in ("browser", "performance"):
            self.browser.get_log(log)
        self.browser.get(page.as_uri())
        self.rest()


    def rest(self):
        """Until the page has drawn what it set out to draw."""
        self.browser.execute_async_script(
            "const done = arguments[0]; let left = 16;"
            "const step = () => --left ? requestAnimationFrame(step) : done(); step();")


    def script(self, text, *arguments):
        return self.browser.execute_script(text, *arguments)


    def one(self, selector):
        return self.browser.find_element(By.CSS_SELECTOR, selector)


    def all(self, selector):
        return self.browser.find_elements(By.CSS_SELECTOR, selector)


    def colors(self, selector=".chosen canvas"):
        """How many pixels of a canvas are of which kind."""
        return self.script("""
            const canvas = document.querySelector(arguments[0]);
            const {data} = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height);
            const count = {any: 0, red: 0, blue: 0, green: 0, violet: 0};
            for (let i = 0; i < data.length; i += 4) {
              const [r, g, b, a] = data.subarray(i, i + 4);
              if (a < 128) continue;
              ++count.any;
              if (r > 1.6 * b && r > g + 20) ++count.red;
              if (b > 1.6 * r && b > g + 20) ++count.blue;
              if (g > 1.3 * r && g > b) ++count.green;
              if (b > g + 40 && r > g + 20) ++count.violet;
            }
            count.all = data.length / 4;
            return count;""", selector)


    def picture(self, selector=".chosen canvas"):
        return self.script("return document.querySelector(arguments[0]).toDataURL()", selector)


    def slide(self, value):
        self.script("const s = document.querySelector('input[type=range]'); s.value = arguments[0];"
                    "s.dispatchEvent(new Event('input', {bubbles: true}))", value)
        self.rest()


    def press(self, selector):
        self.script("document.querySelector(arguments[0]).click()", selector)
        self.rest()

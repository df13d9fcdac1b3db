"""Report pages in a real browser, without a window: Chromium, steered by Selenium.

scripts/test_web runs this with TESK_ORIENT (the program) and AXE (axe-core's script) in the environment.
"""
import base64
import hashlib
import json
import math
import os
import re
import struct
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

PROGRAM = os.environ["TESK_ORIENT"]
AXE = Path(os.environ["AXE"])
HOSTILE = "<img src=x onerror=document.title='caught'>\"'&amp;</script><script>document.title='caught'</script>"
SIZES = [(1440, 1000), (800, 1000), (360, 740)]


def box(x, y, z, at=(0, 0, 0)):
    p = [(at[0] + i * x, at[1] + j * y, at[2] + k * z) for i in (0, 1) for j in (0, 1) for k in (0, 1)]
    quads = [(0, 1, 3, 2), (4, 6, 7, 5), (0, 4, 5, 1), (2, 3, 7, 6), (0, 2, 6, 4), (1, 5, 7, 3)]
    return [t for a, b, c, d in quads for t in ((p[a], p[b], p[c]), (p[a], p[c], p[d]))]


def table():
    """A top on four legs: as it lies, its top hangs over the plate."""
    legs = [(0, 0), (50, 0), (0, 30), (50, 30)]
    return box(60, 40, 6, (0, 0, 34)) + [t for x, y in legs for t in box(10, 10, 34, (x, y, 0))]


def rippled_ball(steps):
    def at(i, j):
        u, v = 2 * math.pi * (i % steps) / steps, math.pi * j / steps
        r = 30 + math.sin(12 * u) * math.sin(v) ** 2 * 2 + math.cos(17 * v)
        return (r * math.cos(u) * math.sin(v), r * math.sin(u) * math.sin(v), r * math.cos(v))
    grid = [[at(i, j) for j in range(steps + 1)] for i in range(steps)]
    triangles = []
    for i in range(steps):
        for j in range(steps):
            a, b = grid[i][j], grid[(i + 1) % steps][j]
            c, d = grid[(i + 1) % steps][j + 1], grid[i][j + 1]
            triangles += [(a, d, c), (a, c, b)]
    return triangles


def write_stl(path, triangles):
    facets = (struct.pack("<12fH", 0, 0, 0, *a, *b, *c, 0) for a, b, c in triangles)
    Path(path).write_bytes(bytes(80) + struct.pack("<I", len(triangles)) + b"".join(facets))


def make_page(folder, name, triangles, *options):
    part = Path(folder, name)
    write_stl(part, triangles)
    page = part.with_suffix(".html")
    subprocess.run([PROGRAM, "orient", part, "-q", "--report", page, *options], check=True, stdout=subprocess.DEVNULL)
    return page


DATA = re.compile(r'(?<=<script type="application/json" id="data">).*?(?=</script>)', re.S)


def data_of(page):
    return json.loads(DATA.search(page.read_text()).group())


def with_data(page, data, to):
    """Another page with the same scripts: what it shows, it takes from its data."""
    text = json.dumps(data).replace("<", "\\u003c")
    to.write_text(DATA.sub(lambda _: text, page.read_text()))
    return to


class PageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        folder = cls.scratch.name
        cls.table = make_page(folder, "table.stl", table())
        cls.sheet = make_page(folder, "sheet.stl", box(180, 120, 0.8))
        cls.broken = make_page(folder, "broken.stl", table()[:-3])
        cls.large = make_page(folder, "large.stl", rippled_ball(360))
        data = data_of(cls.table)
        sheet = data_of(cls.sheet)["objects"][0]
        data["title"] = HOSTILE
        data["objects"] += [{**sheet, "name": HOSTILE, "partNumber": HOSTILE, "copies": 3}, data_of(cls.broken)["objects"][0]]
        data["objects"][1]["input"]["warnings"] = [{"code": "x", "count": 1, "text": HOSTILE}]
        cls.plate = with_data(cls.table, data, Path(folder, "plate.html"))
        cls.browser = cls.start()

    @classmethod
    def start(cls, *switches):
        options = Options()
        for switch in ("--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--use-gl=angle",
                       "--use-angle=swiftshader", "--enable-unsafe-swiftshader", *switches):
            options.add_argument(switch)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)

    @classmethod
    def tearDownClass(cls):
        cls.browser.quit()
        cls.scratch.cleanup()

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

    def test_nothing_is_written_to_the_console_and_nothing_is_asked_of_the_network(self):
        for page in (self.table, self.sheet, self.broken, self.large, self.plate):
            self.open(page)
            self.press("[data-view=below]")
            self.assertEqual(self.browser.get_log("browser"), [])
            asked = [event["params"]["request"]["url"] for event in
                     (json.loads(entry["message"])["message"] for entry in self.browser.get_log("performance"))
                     if event["method"] == "Network.requestWillBeSent"]
            self.assertEqual(asked, [page.as_uri()])

    def test_each_pose_has_a_card_a_row_and_its_figures(self):
        data = data_of(self.table)["objects"][0]
        self.open(self.table)
        names = [f"Pose {pose['rank']}" for pose in data["poses"]] + ["As it lies"]
        self.assertEqual([card.text for card in self.all(".cards strong")], names)
        self.assertEqual([row.text for row in self.all("tbody th")], names)
        cells = [cell.text.replace(",", "") for cell in self.all("tbody tr:last-child td")]
        self.assertEqual(cells[0], f"{data['asItLies']['supportFilamentMm']:.0f}")
        self.assertEqual(cells[5], f"{data['asItLies']['heightMm']:.1f}")
        self.assertEqual(self.one(".reason").text, data["reason"])

    def test_a_card_and_a_row_make_their_pose_the_large_one(self):
        self.open(self.table)
        before = self.picture()
        self.press(".cards li:last-child button")
        self.assertEqual(self.one(".chosen .label").text, "As it lies")
        self.assertEqual(self.one("tr[aria-current]").find_element(By.TAG_NAME, "th").text, "As it lies")
        self.assertNotEqual(self.picture(), before)
        self.assertIn("As it lies is shown", self.script("return document.querySelector('#status').textContent"))
        self.press("tbody tr:first-child button")
        self.assertEqual(self.one(".chosen .label").text, "Pose 1, chosen")
        self.assertEqual(self.picture(), before)
        self.assertEqual(len(self.all(".cards [aria-pressed=true]")), 1)

    def test_every_column_sorts_both_ways(self):
        self.open(self.table)
        heads = len(self.all("thead th"))
        self.assertEqual(heads, 11)
        for column in range(1, heads + 1):
            if column == 8:  # the footprint, sorted by its area
                continue
            orders = []
            for _ in range(2):
                self.press(f"thead th:nth-child({column}) button")
                orders.append(self.one(f"thead th:nth-child({column})").get_attribute("aria-sort"))
                texts = [cell.text for cell in self.all(f"tbody tr > :nth-child({column})")]
                if column in (1, 11):
                    continue
                values = [float(text.replace(",", "").replace("−", "-").replace("–", "-90")) for text in texts]
                self.assertEqual(values, sorted(values, reverse=orders[-1] == "descending"), column)
            self.assertEqual(sorted(orders), ["ascending", "descending"])
            self.assertEqual(len(self.all("[aria-sort]")), 1)

    def test_overhangs_contact_and_support_are_drawn_in_their_colours(self):
        self.open(self.table)
        lies = self.colors(".lies canvas")
        self.assertGreater(lies["any"], 0.05 * lies["all"])
        self.assertGreater(lies["green"], 0.01 * lies["all"])  # under the table's top
        self.press(".columns")
        self.assertLess(self.colors(".lies canvas")["green"], lies["green"] / 20)
        self.press("[data-view=below]")
        seen = self.colors(".lies canvas")
        self.assertGreater(seen["red"], 0.02 * seen["all"])  # the top, flat over the plate
        self.assertGreater(seen["blue"], 0.002 * seen["all"])  # the feet
        self.assertLess(seen["violet"], 0.002 * seen["all"])
        chosen = self.colors(".chosen canvas")  # on its top: all of it touches
        self.assertGreater(chosen["blue"], 0.02 * chosen["all"])
        self.assertLess(chosen["red"], 0.002 * chosen["all"])

    def test_an_overhang_above_the_part_has_its_own_colour(self):
        self.open(self.table)
        on_part = [pose for pose in data_of(self.table)["objects"][0]["poses"]
                   if pose["overhangAreaOnPartMm2"] > 300]
        self.assertTrue(on_part)
        self.press(f".cards li:nth-child({on_part[0]['rank']}) button")
        self.press(".columns")
        most = 0
        for _ in range(12):
            self.press("[data-view=below]")
            canvas = self.one(".chosen canvas")
            for _ in range(5):
                canvas.send_keys(Keys.ARROW_RIGHT)
            self.rest()
            most = max(most, self.colors()["violet"])
            if most > 200:
                break
        self.assertGreater(most, 200)

    def test_the_slider_recolours_and_says_so(self):
        self.open(self.table)
        self.assertEqual(self.one("output").text, "55°")
        self.press("[data-view=below]")
        self.press(".cards li:last-child button")
        self.assertIn("hang over", self.one(".hint").text)
        before = self.one(".hint").text
        self.slide(85)
        self.assertEqual(self.one("output").text, "85°")
        self.assertIn("The figures are for 55°", self.one(".hint").text)
        self.assertEqual(self.one(".hint").text.split(" mm²")[0], before.split(" mm²")[0])

    def test_a_slope_is_coloured_only_beyond_its_angle(self):
        wedge = [((0, 0, 0), (0, 0, 40), (40, 0, 40)), ((0, 30, 0), (40, 30, 40), (0, 30, 40)),
                 ((0, 0, 0), (0, 30, 0), (0, 30, 40)), ((0, 0, 0), (0, 30, 40), (0, 0, 40)),
                 ((0, 0, 40), (0, 30, 40), (40, 30, 40)), ((0, 0, 40), (40, 30, 40), (40, 0, 40)),
                 ((0, 0, 0), (40, 0, 40), (40, 30, 40)), ((0, 0, 0), (40, 30, 40), (0, 30, 0))]
        wedge = [(a, c, b) for a, b, c in wedge]
        self.open(make_page(self.scratch.name, "wedge.stl", wedge))
        self.press(".columns")
        self.press("[data-view=below]")
        self.slide(40)
        self.assertEqual(self.colors(".lies canvas")["red"], 0)
        self.slide(50)
        self.assertGreater(self.colors(".lies canvas")["red"], 2000)

    def test_mouse_wheel_and_keys_turn_and_zoom_both_views(self):
        self.open(self.table)
        canvas = self.one(".chosen canvas")

        def changes(act):
            before = (self.picture(), self.picture(".lies canvas"))
            act()
            self.rest()
            after = (self.picture(), self.picture(".lies canvas"))
            self.assertNotEqual(before[0], after[0])
            self.assertNotEqual(before[1], after[1])
            return after

        start = (self.picture(), self.picture(".lies canvas"))
        changes(lambda: ActionChains(self.browser).click_and_hold(canvas).move_by_offset(60, 20).release().perform())
        changes(lambda: self.script("arguments[0].dispatchEvent(new WheelEvent('wheel', {deltaY: -300}))", canvas))
        changes(lambda: canvas.send_keys(Keys.ARROW_LEFT))
        changes(lambda: canvas.send_keys("+"))
        changes(lambda: canvas.send_keys(Keys.SHIFT, Keys.ARROW_UP))
        self.assertEqual(changes(lambda: canvas.send_keys("0")), start)

    def test_everything_can_be_reached_by_keyboard(self):
        self.open(self.table)
        wanted = {"thead th button": 11, "tbody button": len(self.all("tbody tr")),
                  ".cards button": len(self.all(".cards li")), ".view canvas": 2, "[data-view]": 4, "summary": 1}
        self.script("document.activeElement.blur()")
        reached = {selector: set() for selector in wanted}
        for i in range(sum(wanted.values()) + 10):
            self.browser.switch_to.active_element.send_keys(Keys.TAB)
            for selector in wanted:
                if self.script("return document.activeElement.matches(arguments[0])", selector):
                    reached[selector].add(self.browser.switch_to.active_element.id)
        self.assertEqual({selector: len(found) for selector, found in reached.items()}, wanted)

    def test_no_size_makes_the_page_wider_than_the_window(self):
        for page in (self.table, self.plate, self.broken):
            self.open(page)
            for width, height in SIZES:
                self.resize(width, height)
                self.rest()
                self.assertLessEqual(self.script("return document.documentElement.scrollWidth"), width)
                drawn, shown = self.script("const c = document.querySelector('.chosen canvas');"
                                           "return [c.width, c.clientWidth]")
                self.assertEqual(drawn, shown)
                self.assertGreater(self.colors()["any"], 1000)

    @unittest.skipUnless(AXE.is_file(), "scripts/test_web fetches axe-core")
    def test_axe_finds_no_fault_in_light_or_dark(self):
        axe = AXE.read_text()
        for page in (self.table, self.plate, self.broken):
            for scheme in ("light", "dark"):
                self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
                    "features": [{"name": "prefers-color-scheme", "value": scheme}]})
                self.open(page)
                # By the browser's own tools, which the page's policy does not stop.
                found = self.script(axe + "; return axe.run()")
                faults = [(fault["id"], node["html"]) for fault in found["violations"] for node in fault["nodes"]]
                self.assertEqual(faults, [])
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": []})

    def test_names_from_files_are_text(self):
        self.open(self.plate)
        self.assertEqual(self.one("h1").text.replace(" ", ""), "table.stl")  # by the program, before any script
        self.assertEqual(self.script("return document.querySelectorAll('img, main script').length"), 0)
        self.assertEqual(self.script("return document.querySelectorAll('.name')[1].textContent"),
                         f"{HOSTILE} · {HOSTILE} · 3 pieces")
        self.assertIn(HOSTILE, self.script("return document.querySelector('#part-2 .warnings').textContent"))
        self.assertNotEqual(self.browser.title, "caught")

    def test_a_part_with_markup_for_a_name_is_named_in_full(self):
        name = "<img src=x onerror=document.title='caught'>&quot;'.stl"
        self.open(make_page(self.scratch.name, name, box(10, 10, 10)))
        self.assertEqual(self.one("h1").text, name)
        self.assertEqual(self.browser.title, name + ": build poses")
        self.assertEqual(self.all("img"), [])

    def test_the_policy_lets_nothing_run_but_the_pages_own_scripts(self):
        text = self.table.read_text()
        policy = re.search(r'Content-Security-Policy" content="([^"]*)"', text).group(1)
        self.assertIn("default-src 'none'", policy)
        self.assertNotIn("unsafe", policy)
        for tag in ("script", "style"):
            for content in re.findall(rf"<{tag}>(.*?)</{tag}>", text, re.S):
                digest = base64.b64encode(hashlib.sha256(content.encode()).digest()).decode()
                self.assertIn(f"'sha256-{digest}'", policy)
        tampered = Path(self.scratch.name, "tampered.html")
        tampered.write_text(text.replace(
            "</body>", "<script>document.title='caught'</script><img src='https://example.invalid/x.png' "
            "onerror=\"document.title='caught'\"></body>"))
        self.browser.get(tampered.as_uri())
        time.sleep(0.5)
        self.assertNotEqual(self.browser.title, "caught")
        refused = [entry["message"] for entry in self.browser.get_log("browser")]
        self.assertTrue(any("script-src" in message for message in refused), refused)
        self.assertTrue(any("img-src" in message for message in refused), refused)

    def test_a_large_part_is_drawn_with_fewer_triangles_and_says_so(self):
        mesh = data_of(self.large)["objects"][0]["mesh"]
        self.assertEqual(mesh["sourceTriangles"], 2 * 360 * 360)
        self.assertLessEqual(mesh["triangles"], 200_000)
        self.assertGreater(mesh["triangles"], 150_000)
        self.assertLess(self.large.stat().st_size, 8_000_000)
        self.open(self.large)
        self.assertGreater(self.colors()["any"], 10000)
        self.assertIn("The figures are those of the full part", self.one(".simplified").text)

    def test_warnings_stand_on_the_page(self):
        self.open(self.broken)
        self.assertIn("not closed", self.one(".warnings").text)
        self.open(self.table)
        self.assertFalse(self.one(".warnings").is_displayed())

    def test_the_page_prints_on_a4(self):
        self.open(self.table)
        printed = self.browser.execute_cdp_cmd("Page.printToPDF", {"preferCSSPageSize": True, "printBackground": True})
        pdf = base64.b64decode(printed["data"])
        self.assertIn(len(re.findall(rb"/Type\s*/Page\b", pdf)), (1, 2))
        self.assertRegex(pdf, rb"/MediaBox\s*\[0 0 59[45][0-9.]* 84[12]")

    def test_without_webgl_the_figures_are_still_there(self):
        browser = self.start("--disable-3d-apis")
        try:
            browser.get(self.table.as_uri())
            self.assertTrue(browser.find_element(By.ID, "no-pictures").is_displayed())
            self.assertFalse(browser.find_element(By.CSS_SELECTOR, ".stage").is_displayed())
            browser.find_element(By.CSS_SELECTOR, "tbody tr:last-child button").click()
            self.assertEqual(browser.find_element(By.CSS_SELECTOR, "tr[aria-current] th").text, "As it lies")
        finally:
            browser.quit()

    def test_the_same_part_gives_the_same_bytes(self):
        before = self.table.read_bytes()
        make_page(self.scratch.name, "table.stl", table(), "--threads", "1")
        self.assertEqual(self.table.read_bytes(), before)


if __name__ == "__main__":
    unittest.main()

"""Report pages in a real browser, without a window: Chromium, steered by Selenium.

scripts/test_web runs this with TESK_ORIENT (the program) and AXE (axe-core's script) in the environment.
"""
import base64
import hashlib
import json
import re
import time
import unittest
from pathlib import Path

from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

import parts
from page_case import (AXE, SCRATCH, SIZES, PageCase, broken, data_of, large, make_page, plate, sheet, start_browser,
                       table)
from plate_test import PlateTest  # noqa: F401, for unittest.main() to find
from steering_test import SteeringTest, TouchTest  # noqa: F401


class PageTest(PageCase):
    def test_nothing_is_written_to_the_console_and_nothing_is_asked_of_the_network(self):
        for page in (table(), sheet(), broken(), large(), plate()):
            self.open(page)
            self.press("[data-view=below]")
            self.assertEqual(self.browser.get_log("browser"), [])
            asked = [event["params"]["request"]["url"] for event in
                     (json.loads(entry["message"])["message"] for entry in self.browser.get_log("performance"))
                     if event["method"] == "Network.requestWillBeSent"]
            self.assertEqual(asked, [page.as_uri()])


    def test_each_pose_has_a_card_a_row_and_its_figures(self):
        data = data_of(table())["objects"][0]
        self.open(table())
        names = [f"Pose {pose['rank']}" for pose in data["poses"]] + ["As it lies"]
        self.assertEqual([card.text for card in self.all(".cards strong")], names)
        self.assertEqual([row.text for row in self.all("tbody th")], names)
        cells = [cell.text.replace(",", "") for cell in self.all("tbody tr:last-child td")]
        self.assertEqual(cells[0], f"{data['asItLies']['supportFilamentMm']:.0f}")
        self.assertEqual(cells[5], f"{data['asItLies']['heightMm']:.1f}")
        self.assertEqual(self.one(".reason").text, data["reason"])


    def test_a_card_and_a_row_make_their_pose_the_large_one(self):
        self.open(table())
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
        self.open(table())
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
        self.open(table())
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
        self.open(table())
        on_part = [pose for pose in data_of(table())["objects"][0]["poses"]
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
        self.open(table())
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
        self.open(make_page("wedge.stl", parts.wedge()))
        self.press(".columns")
        self.press("[data-view=below]")
        self.slide(40)
        self.assertEqual(self.colors(".lies canvas")["red"], 0)
        self.slide(50)
        self.assertGreater(self.colors(".lies canvas")["red"], 2000)


    def test_no_size_makes_the_page_wider_than_the_window(self):
        for page in (table(), plate(), broken()):
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
        for page in (table(), plate(), broken()):
            for scheme in ("light", "dark"):
                self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
                    "features": [{"name": "prefers-color-scheme", "value": scheme}]})
                self.open(page)
                # By the browser's own tools, which the page's policy does not stop.
                found = self.script(axe + "; return axe.run()")
                faults = [(fault["id"], node["html"]) for fault in found["violations"] for node in fault["nodes"]]
                self.assertEqual(faults, [])
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": []})


    def test_a_part_with_markup_for_a_name_is_named_in_full(self):
        name = "<img src=x onerror=document.title='caught'>&quot;'.stl"
        self.open(make_page(name, parts.box(10, 10, 10)))
        self.assertEqual(self.one("h1").text, name)
        self.assertEqual(self.browser.title, name + ": build poses")
        self.assertEqual(self.all("img"), [])


    def test_the_policy_lets_nothing_run_but_the_pages_own_scripts(self):
        text = table().read_text()
        policy = re.search(r'Content-Security-Policy" content="([^"]*)"', text).group(1)
        self.assertIn("default-src 'none'", policy)
        self.assertNotIn("unsafe", policy)
        for tag in ("script", "style"):
            for content in re.findall(rf"<{tag}>(.*?)</{tag}>", text, re.S):
                digest = base64.b64encode(hashlib.sha256(content.encode()).digest()).decode()
                self.assertIn(f"'sha256-{digest}'", policy)
        tampered = Path(SCRATCH.name, "tampered.html")
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
        mesh = data_of(large())["objects"][0]["mesh"]
        self.assertEqual(mesh["sourceTriangles"], 2 * 360 * 360)
        self.assertLessEqual(mesh["triangles"], 200_000)
        self.assertGreater(mesh["triangles"], 150_000)
        self.assertLess(large().stat().st_size, 8_000_000)
        self.open(large())
        self.assertGreater(self.colors()["any"], 10000)
        self.assertIn("The figures are those of the full part", self.one(".simplified").text)


    def test_warnings_stand_on_the_page(self):
        self.open(broken())
        self.assertIn("not closed", self.one(".object .warnings").text)
        self.open(table())
        self.assertFalse(self.one(".object .warnings").is_displayed())


    def test_the_page_prints_on_a4(self):
        self.open(table())
        printed = self.browser.execute_cdp_cmd("Page.printToPDF", {"preferCSSPageSize": True, "printBackground": True})
        pdf = base64.b64decode(printed["data"])
        self.assertIn(len(re.findall(rb"/Type\s*/Page\b", pdf)), (1, 2))
        self.assertRegex(pdf, rb"/MediaBox\s*\[0 0 59[45][0-9.]* 84[12]")


    def test_on_paper_pictures_are_neither_stretched_nor_of_two_scales(self):
        self.open(table())
        for width, height in SIZES:
            self.resize(width, height)
            self.script("window.dispatchEvent(new Event('beforeprint'))")
            self.rest()
            views = self.script("return [...document.querySelectorAll('.stage canvas')].map("
                                "(c) => [c.width / c.clientWidth, c.height / c.clientHeight])")
            for across, down in views:
                self.assertAlmostEqual(across, 2, delta=0.02)
                self.assertAlmostEqual(down, 2, delta=0.02)
            self.script("window.dispatchEvent(new Event('afterprint'))")

    def test_without_webgl_the_figures_are_still_there(self):
        browser = start_browser("--disable-3d-apis")
        try:
            browser.get(table().as_uri())
            self.assertTrue(browser.find_element(By.ID, "no-pictures").is_displayed())
            self.assertFalse(browser.find_element(By.CSS_SELECTOR, ".stage").is_displayed())
            browser.find_element(By.CSS_SELECTOR, "tbody tr:last-child button").click()
            self.assertEqual(browser.find_element(By.CSS_SELECTOR, "tr[aria-current] th").text, "As it lies")
        finally:
            browser.quit()


    def test_the_same_part_gives_the_same_bytes(self):
        before = table().read_bytes()
        make_page("table.stl", parts.table(), "--threads", "1")
        self.assertEqual(table().read_bytes(), before)


if __name__ == "__main__":
    unittest.main()

"""The page of a 3MF of several objects, made by the program."""
from page_case import HOSTILE, PageCase, data_of, plate


class PlateTest(PageCase):
    def test_each_object_has_a_section_with_its_poses(self):
        data = data_of(plate())
        self.assertEqual([part["name"] for part in data["objects"]], [HOSTILE, "Sheet", "object 3"])
        self.open(plate())
        self.assertEqual([link.text for link in self.all("#contents a")][1:], ["Sheet", "object 3"])
        for i, part in enumerate(data["objects"], 1):
            self.assertEqual(len(self.all(f"#part-{i} .cards li")), len(part["poses"]) + 1)
            self.assertEqual(len(self.all(f"#part-{i} tbody tr")), len(part["poses"]) + 1)
            self.assertEqual(self.one(f"#part-{i} .reason").text, part["reason"])
            self.assertGreater(self.colors(f"#part-{i} .chosen canvas")["any"], 10000)

    def test_a_section_is_steered_and_picked_by_itself(self):
        self.open(plate())
        before = [self.picture(f"#part-{i} .chosen canvas") for i in (1, 2, 3)]
        self.press("#part-3 .cards li:last-child button")
        self.press("#part-3 [data-view=below]")
        after = [self.picture(f"#part-{i} .chosen canvas") for i in (1, 2, 3)]
        self.assertEqual(after[:2], before[:2])
        self.assertNotEqual(after[2], before[2])
        self.assertEqual(self.one("#part-1 .chosen .label").text, "Pose 1, chosen")

    def test_names_from_the_file_are_text(self):
        self.open(plate())
        self.assertEqual(self.script("return document.querySelectorAll('img, main script').length"), 0)
        self.assertEqual(self.script("return document.querySelector('#part-1 .name').textContent"),
                         f"{HOSTILE} · {HOSTILE} · 3 pieces")
        self.assertEqual(self.script("return document.querySelector('#contents a').textContent"), HOSTILE)
        self.assertIn(HOSTILE, self.script(
            "return document.querySelector('#part-1 .chosen canvas').getAttribute('aria-label')"))
        self.assertEqual(self.browser.title, "plate.3mf: build poses")

    def test_warnings_about_the_plate_stand_above_those_of_parts(self):
        data = data_of(plate())
        self.assertEqual([warning["code"] for warning in data["warnings"]], ["parts-overlap"])
        self.open(plate())
        text = self.one("#plate-warnings").text
        self.assertIn("overlap", text)
        self.assertIn("object 3", text)
        self.assertNotIn("closed", text)
        self.assertIn("not closed", self.one("#part-3 .warnings").text)
        self.assertFalse(self.one("#part-1 .warnings").is_displayed())

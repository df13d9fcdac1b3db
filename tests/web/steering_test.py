"""Turning, zooming and moving the pictures of a page by mouse, wheel, keys and fingers."""
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys

from page_case import PageCase, table


class SteeringTest(PageCase):
    def changes(self, act):
        """Both pictures after something that changes both."""
        before = (self.picture(), self.picture(".lies canvas"))
        act()
        self.rest()
        after = (self.picture(), self.picture(".lies canvas"))
        self.assertNotEqual(before[0], after[0])
        self.assertNotEqual(before[1], after[1])
        return after

    def test_mouse_wheel_and_keys_turn_and_zoom_both_views(self):
        self.open(table())
        canvas = self.one(".chosen canvas")
        changes = self.changes
        start = (self.picture(), self.picture(".lies canvas"))
        changes(lambda: ActionChains(self.browser).click_and_hold(canvas).move_by_offset(60, 20).release().perform())
        changes(lambda: self.script("arguments[0].dispatchEvent(new WheelEvent('wheel', {deltaY: -300}))", canvas))
        changes(lambda: canvas.send_keys(Keys.ARROW_LEFT))
        changes(lambda: canvas.send_keys("+"))
        changes(lambda: canvas.send_keys(Keys.SHIFT, Keys.ARROW_UP))
        self.assertEqual(changes(lambda: canvas.send_keys("0")), start)

    def test_everything_can_be_reached_by_keyboard(self):
        self.open(table())
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



class TouchTest(PageCase):
    """A phone of 360 pixels, and fingers on it."""

    def setUp(self):
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": 360, "height": 740, "deviceScaleFactor": 2, "mobile": True})
        self.browser.execute_cdp_cmd("Emulation.setTouchEmulationEnabled", {"enabled": True, "maxTouchPoints": 5})
        self.open(table())
        self.script("document.querySelector('.chosen').scrollIntoView({block: 'center'})")
        self.rest()

    def tearDown(self):
        self.browser.execute_cdp_cmd("Emulation.setTouchEmulationEnabled", {"enabled": False})

    def touch(self, *paths, steps=8):
        """Fingers go from place to place at the same time: [(x, y), (x, y)] for each."""
        def send(kind, fingers):
            self.browser.execute_cdp_cmd("Input.dispatchTouchEvent", {"type": kind, "touchPoints": [
                {"x": x, "y": y, "id": i} for i, (x, y) in enumerate(fingers)]})
        send("touchStart", [path[0] for path in paths])
        for step in range(1, steps + 1):
            send("touchMove", [tuple(a + (b - a) * step / steps for a, b in zip(*path)) for path in paths])
            self.rest()
        send("touchEnd", [])
        self.rest()

    def middle(self, selector=".chosen canvas"):
        return self.script("const r = document.querySelector(arguments[0]).getBoundingClientRect();"
                           "return [r.left + r.width / 2, r.top + r.height / 2]", selector)

    def state(self):
        return self.script("return [scrollX, scrollY, visualViewport.scale]")

    def width_drawn(self, selector=".lies canvas"):
        """How wide the support stands in a picture, in pixels."""
        return self.script("""
            const canvas = document.querySelector(arguments[0]);
            const {data} = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height);
            let least = Infinity, most = -Infinity;
            for (let i = 0; i < data.length; i += 4) {
              const [r, g, b, a] = data.subarray(i, i + 4);
              if (a < 128 || !(g > 1.3 * r && g > b)) continue;
              const x = i / 4 % canvas.width;
              least = Math.min(least, x);
              most = Math.max(most, x);
            }
            return most - least;""", selector)

    def test_one_finger_turns_and_the_page_stays(self):
        x, y = self.middle()
        before, state = (self.picture(), self.picture(".lies canvas")), self.state()
        for to in ((x + 80, y), (x, y + 80)):
            self.touch([(x, y), to])
            after = (self.picture(), self.picture(".lies canvas"))
            self.assertNotEqual(before[0], after[0])
            self.assertNotEqual(before[1], after[1])
            self.assertEqual(self.state(), state)
            before = after

    def test_two_fingers_zoom_the_picture_and_not_the_page(self):
        x, y = self.middle()
        before, state = self.width_drawn(), self.state()
        self.assertGreater(before, 50)
        self.touch([(x - 30, y), (x - 45, y)], [(x + 30, y), (x + 45, y)])
        wider = self.width_drawn()
        self.assertGreater(wider, 1.35 * before)
        self.assertLess(wider, 1.65 * before)
        self.touch([(x - 90, y), (x - 45, y)], [(x + 90, y), (x + 45, y)])
        self.assertLess(self.width_drawn(), 0.6 * wider)
        self.assertEqual(self.state(), state)

    def test_a_finger_that_is_lifted_leaves_the_other_turning(self):
        x, y = self.middle()
        self.touch([(x - 30, y), (x - 40, y)], [(x + 30, y), (x + 40, y)])
        before, width = self.picture(), self.width_drawn()
        self.touch([(x, y), (x + 40, y)])
        self.assertNotEqual(self.picture(), before)
        self.assertLess(self.width_drawn(), 1.5 * width)

    def test_beside_the_picture_a_finger_scrolls_the_page(self):
        before = self.picture()
        x, y = self.middle(".chosen figcaption")
        _, top, _ = self.state()
        self.touch([(x, y), (x, y - 100)])
        self.assertGreater(self.state()[1], top + 50)
        self.assertEqual(self.picture(), before)

    def test_a_tap_picks_a_pose_and_sorts(self):
        for selector, label in ((".cards li:last-child button", "As it lies"),
                                ("tbody tr:first-child button", "Pose 1, chosen")):
            self.script("document.querySelector(arguments[0]).scrollIntoView({block: 'center'})", selector)
            self.rest()
            place = self.middle(selector)
            self.touch([place, place], steps=1)
            self.assertEqual(self.one(".chosen .label").text, label)

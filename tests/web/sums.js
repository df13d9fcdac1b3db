// The sums of a report page's script, without a browser.
"use strict";
const assert = require("assert");
const fs = require("fs");
const path = require("path");
const vm = require("vm");

const web = path.join(__dirname, "../../web");
const files = ["data.js", "geometry.js", "steering.js", "table.js", "page.js"];
const context = vm.createContext({ atob: (/** @type {string} */ text) => Buffer.from(text, "base64").toString("latin1") });
vm.runInContext(files.map((file) => fs.readFileSync(path.join(web, file), "utf8")).join("\n"), context);
const page = vm.runInContext("({numbersOf, meshOf, gramsOf, numberText, facetsOf, creasesOf, boundsOf, onPlate, " +
  "overhangArea, hitsOf, columnsIn, prismsOf, turnBy, zoomBy, newOrbit, steerByKey, plateSizeOf, passedText})", context);

const plain = (value) => Array.from(value);
const close = (a, b) => assert.ok(Math.abs(a - b) < 1e-4 * Math.max(1, Math.abs(b)), `${a} is not ${b}`);
const upright = [[1, 0, 0, 0], [0, 1, 0, 0], [0, 0, 1, 0], [0, 0, 0, 1]];

/** A box about the origin, outward. */
function boxOf(x, y, z) {
  const positions = [];
  for (const i of [-1, 1]) for (const j of [-1, 1]) for (const k of [-1, 1]) positions.push(i * x / 2, j * y / 2, k * z / 2);
  const corners = [];
  for (const [a, b, c, d] of [[0, 1, 3, 2], [4, 6, 7, 5], [0, 4, 5, 1], [2, 3, 7, 6], [0, 2, 6, 4], [1, 5, 7, 3]]) {
    corners.push(a, b, c, a, c, d);
  }
  return { positions: new Float32Array(positions), corners: new Uint32Array(corners) };
}

const cases = {
  "numbers are little-endian, of 16 and of 32 bits"() {
    assert.deepStrictEqual(plain(page.numbersOf(Buffer.from([1, 0, 0, 1, 255, 255]).toString("base64"), 16)), [1, 256, 65535]);
    assert.deepStrictEqual(plain(page.numbersOf(Buffer.from([4, 3, 2, 1, 255, 255, 255, 255]).toString("base64"), 32)),
      [16909060, 4294967295]);
  },
  "a packed mesh lies about its own centre"() {
    const numbers = Buffer.from(new Uint16Array([0, 0, 0, 65535, 65535, 65535]).buffer).toString("base64");
    const indices = Buffer.from(new Uint16Array([0, 1, 0]).buffer).toString("base64");
    const mesh = page.meshOf({ positions: numbers, indices, indexBits: 16, stepMm: [10 / 65535, 0, 2 / 65535] });
    plain(mesh.positions).forEach((value, i) => close(value, [-5, 0, -1, 5, 0, 1][i]));
    assert.deepStrictEqual(plain(mesh.corners), [0, 1, 0]);
  },
  "a metre of filament weighs three grams"() {
    close(page.gramsOf(1000, { diameterMm: 1.75, densityGPerCm3: 1.24 }), 2.98256);
  },
  "numbers have a true minus sign and no minus before zero"() {
    assert.strictEqual(page.numberText(-0.2), "0");
    assert.strictEqual(page.numberText(-1234.56, 1), "−1,234.6");
  },
  "a box has twelve creases, and each facet its normal"() {
    const { positions, corners } = boxOf(2, 3, 4);
    const { normals } = page.facetsOf(positions, corners);
    assert.strictEqual(page.creasesOf(positions, corners, normals).length, 12 * 6);
    for (let t = 0; t < normals.length; t += 9) close(Math.hypot(normals[t], normals[t + 1], normals[t + 2]), 1);
  },
  "an open edge is a crease"() {
    const positions = new Float32Array([0, 0, 0, 1, 0, 0, 0, 1, 0]), corners = new Uint32Array([0, 1, 2]);
    const { normals } = page.facetsOf(positions, corners);
    assert.strictEqual(page.creasesOf(positions, corners, normals).length, 3 * 6);
  },
  "a turned part stands on the plate, centred"() {
    const { positions } = boxOf(2, 3, 4);
    const tipped = [[1, 0, 0, 0], [0, 0, 1, 0], [0, -1, 0, 0]]; // y goes up
    const bounds = page.boundsOf(positions, tipped);
    const stood = page.onPlate(positions, tipped, bounds);
    const after = page.boundsOf(stood, upright);
    [-1, -2, 0].forEach((value, k) => close(after.min[k], value));
    [1, 2, 3].forEach((value, k) => close(after.max[k], value));
  },
  "a lifted box hangs over by its whole base, and a standing one not at all"() {
    const { positions, corners } = boxOf(2, 3, 4);
    const { points } = page.facetsOf(positions, corners);
    const standing = page.onPlate(points, upright, page.boundsOf(positions, upright));
    const lifted = standing.map((value, i) => (i % 3 === 2 ? value + 5 : value));
    assert.strictEqual(page.overhangArea(standing, 55), 0);
    close(page.overhangArea(lifted, 55), 6);
  },
  "columns reach from the plate to the overhang, and from the part to what hangs over it"() {
    const lower = boxOf(10, 10, 2), upper = boxOf(10, 10, 2);
    const facets = [lower, upper].map(({ positions, corners }, i) => {
      const { points } = page.facetsOf(positions, corners);
      return plain(points).map((value, k) => (k % 3 === 2 ? value + 1 + 6 * i + 3 : value));
    });
    const columns = page.columnsIn(page.hitsOf(new Float32Array(facets.flat()), 1), 55);
    assert.strictEqual(columns.length, 200);
    const ends = new Set(plain(columns).map(({ low, high }) => low + " " + high));
    assert.deepStrictEqual([...ends].sort(), ["0 3", "5 9"]);
    assert.strictEqual(page.prismsOf(columns, 0.5).length, 200 * 72);
  },
  "the angle decides what needs support"() {
    const slope = new Float32Array([0, 0, 1, 0, 10, 1, 10, 0, 11]); // 45°, facing down
    const at = (angle) => page.columnsIn(page.hitsOf(slope, 1), angle).length;
    assert.strictEqual(at(44), 0);
    assert.ok(at(46) > 40);
  },
  "turning stops at the poles, and zooming at its limits"() {
    const orbit = page.newOrbit();
    page.turnBy(orbit, 0, 100);
    close(orbit.pitch, Math.PI / 2);
    page.zoomBy(orbit, 1e9);
    assert.ok(orbit.zoom <= 60);
    assert.strictEqual(page.steerByKey(orbit, { key: "0", shiftKey: false }, () => {}), true);
    assert.strictEqual(orbit.zoom, 1);
    assert.strictEqual(page.steerByKey(orbit, { key: "Tab", shiftKey: false }, () => {}), false);
  },
  "the plate is the printer's, or has room for every pose"() {
    const poses = [{ footprintMm: [91, 20] }, { footprintMm: [10, 104] }];
    assert.deepStrictEqual(plain(page.plateSizeOf(poses, { buildVolumeMm: [250, 210, 200] })), [250, 210]);
    assert.deepStrictEqual(plain(page.plateSizeOf(poses, { buildVolumeMm: [0, 0, 0] })), [140, 140]);
  },
  "what was passed over is said only where there is any"() {
    assert.strictEqual(page.passedText({ tooLarge: 0, cannotStand: 0 }), "");
    assert.strictEqual(page.passedText({ tooLarge: 2 }), "Poses passed over: 2 did not fit the build volume.");
  },
};

let failures = 0;
for (const [name, run] of Object.entries(cases)) {
  try {
    run();
  } catch (error) {
    ++failures;
    console.error(`${name}: ${error.message}`);
  }
}
console.log(`${Object.keys(cases).length - failures} passed, ${failures} failed`);
process.exitCode = failures === 0 ? 0 : 1;

/** @typedef {{min: number[], max: number[]}} Bounds */

/** What lies this near the plate, in mm, touches it; as tesk-orient measures contact. */
const CONTACT_GAP = 0.2;

/**
 * Every facet with corners and a normal of its own, so that it is drawn flat.
 *
 * @param {Float32Array} positions
 * @param {Uint32Array} corners
 * @returns {{points: Float32Array, normals: Float32Array}}
 */
function facetsOf(positions, corners) {
  const points = new Float32Array(corners.length * 3);
  const normals = new Float32Array(corners.length * 3);
  for (let i = 0; i < corners.length; ++i) {
    for (let k = 0; k < 3; ++k) points[3 * i + k] = positions[3 * corners[i] + k];
  }
  for (let t = 0; t < points.length; t += 9) {
    const n = normalAt(points, t);
    for (let k = 0; k < 9; ++k) normals[t + k] = n[k % 3];
  }
  return { points, normals };
}

/**
 * The unit normal of the triangle whose nine coordinates begin at an index; zero if it has no area.
 *
 * @param {ArrayLike<number>} p
 * @param {number} t
 * @returns {number[]}
 */
function normalAt(p, t) {
  const ux = p[t + 3] - p[t], uy = p[t + 4] - p[t + 1], uz = p[t + 5] - p[t + 2];
  const vx = p[t + 6] - p[t], vy = p[t + 7] - p[t + 1], vz = p[t + 8] - p[t + 2];
  const n = [uy * vz - uz * vy, uz * vx - ux * vz, ux * vy - uy * vx];
  const length = Math.hypot(n[0], n[1], n[2]) || 1;
  return [n[0] / length, n[1] / length, n[2] / length];
}

/**
 * Edges at which the surface bends by more than 30°, or ends: the lines of a drawing.
 *
 * @param {Float32Array} positions
 * @param {Uint32Array} corners
 * @param {Float32Array} normals  of facetsOf()
 * @returns {Float32Array} six coordinates per edge
 */
function creasesOf(positions, corners, normals) {
  const bend = Math.cos(Math.PI / 6);
  const vertices = positions.length / 3;
  /** @type {Map<number, number>} the facet at an edge that has met no other yet */
  const open = new Map();
  /** @type {number[]} */
  const lines = [];
  const draw = (/** @type {number} */ a, /** @type {number} */ b) => {
    for (const v of [a, b]) lines.push(positions[3 * v], positions[3 * v + 1], positions[3 * v + 2]);
  };
  for (let i = 0; i < corners.length; ++i) {
    const facet = Math.floor(i / 3);
    const a = corners[i], b = corners[i % 3 === 2 ? i - 2 : i + 1];
    const key = Math.min(a, b) * vertices + Math.max(a, b);
    const other = open.get(key);
    if (other === undefined) {
      open.set(key, facet);
      continue;
    }
    open.delete(key);
    const m = 9 * facet, n = 9 * other;
    const cosine = normals[m] * normals[n] + normals[m + 1] * normals[n + 1] + normals[m + 2] * normals[n + 2];
    if (cosine < bend) draw(a, b);
  }
  for (const key of open.keys()) draw(Math.floor(key / vertices), key % vertices);
  return new Float32Array(lines);
}

/**
 * A point turned by a pose.
 *
 * @param {number[][]} m  of a pose, for row vectors
 * @param {ArrayLike<number>} p
 * @param {number} i  where the point begins
 * @returns {number[]}
 */
function turned(m, p, i) {
  const x = p[i], y = p[i + 1], z = p[i + 2];
  return [
    x * m[0][0] + y * m[1][0] + z * m[2][0],
    x * m[0][1] + y * m[1][1] + z * m[2][1],
    x * m[0][2] + y * m[1][2] + z * m[2][2],
  ];
}

/**
 * The box of a part turned by a pose about its centre.
 *
 * @param {Float32Array} positions
 * @param {number[][]} matrix
 * @returns {Bounds}
 */
function boundsOf(positions, matrix) {
  const min = [Infinity, Infinity, Infinity], max = [-Infinity, -Infinity, -Infinity];
  for (let i = 0; i < positions.length; i += 3) {
    const p = turned(matrix, positions, i);
    for (let k = 0; k < 3; ++k) {
      if (p[k] < min[k]) min[k] = p[k];
      if (p[k] > max[k]) max[k] = p[k];
    }
  }
  return { min, max };
}

/**
 * A part as it stands on the plate: turned, its box centred over the origin, its lowest point at 0.
 *
 * @param {Float32Array} values  points, or with `isDirection` normals
 * @param {number[][]} matrix
 * @param {Bounds} bounds
 * @param {boolean} isDirection
 * @returns {Float32Array}
 */
function onPlate(values, matrix, bounds, isDirection) {
  const shift = isDirection ? [0, 0, 0] : placeOf(bounds);
  const result = new Float32Array(values.length);
  for (let i = 0; i < values.length; i += 3) {
    const p = turned(matrix, values, i);
    for (let k = 0; k < 3; ++k) result[i + k] = p[k] + shift[k];
  }
  return result;
}

/**
 * What to add to a turned point, for onPlate().
 *
 * @param {Bounds} b
 * @returns {number[]}
 */
function placeOf(b) {
  return [-(b.min[0] + b.max[0]) / 2, -(b.min[1] + b.max[1]) / 2, -b.min[2]];
}

/**
 * The area of the facets that hang over, a little above the plate.
 *
 * @param {Float32Array} points  on the plate
 * @param {number} angleDeg  as PoseGoal::overhangAngleDeg of the library
 * @returns {number} mm²
 */
function overhangArea(points, angleDeg) {
  const limit = -Math.cos(angleDeg * Math.PI / 180);
  let area = 0;
  for (let t = 0; t < points.length; t += 9) {
    if (normalAt(points, t)[2] >= limit) continue;
    if (points[t + 2] + points[t + 5] + points[t + 8] <= 3 * CONTACT_GAP) continue;
    area += areaOf(points, t);
  }
  return area;
}

/**
 * @param {ArrayLike<number>} p
 * @param {number} t
 * @returns {number}
 */
function areaOf(p, t) {
  const ux = p[t + 3] - p[t], uy = p[t + 4] - p[t + 1], uz = p[t + 5] - p[t + 2];
  const vx = p[t + 6] - p[t], vy = p[t + 7] - p[t + 1], vz = p[t + 8] - p[t + 2];
  return Math.hypot(uy * vz - uz * vy, uz * vx - ux * vz, ux * vy - uy * vx) / 2;
}

/**
 * Where vertical lines of a grid meet the facets, for columnsIn().
 *
 * @param {Float32Array} points  on the plate
 * @param {number} pitch  mm between lines
 * @returns {Map<string, {x: number, y: number, hits: {z: number, nz: number}[]}>}
 */
function hitsOf(points, pitch) {
  const lines = new Map();
  for (let t = 0; t < points.length; t += 9) {
    const first = (/** @type {number} */ k) =>
      Math.ceil(Math.min(points[t + k], points[t + 3 + k], points[t + 6 + k]) / pitch - 0.5);
    const last = (/** @type {number} */ k) =>
      Math.floor(Math.max(points[t + k], points[t + 3 + k], points[t + 6 + k]) / pitch - 0.5);
    const x1 = last(0), y0 = first(1), y1 = last(1);
    for (let i = first(0); i <= x1; ++i) {
      for (let j = y0; j <= y1; ++j) {
        const x = (i + 0.5) * pitch, y = (j + 0.5) * pitch;
        const z = heightAt(points, t, x, y);
        if (z === null) continue;
        const key = i + "," + j;
        if (!lines.has(key)) lines.set(key, { x, y, hits: [] });
        lines.get(key).hits.push({ z, nz: normalAt(points, t)[2] });
      }
    }
  }
  for (const line of lines.values()) {
    line.hits.sort((/** @type {{z: number}} */ a, /** @type {{z: number}} */ b) => a.z - b.z);
  }
  return lines;
}

/**
 * The height of a triangle over a point, or null beside it.
 *
 * @param {Float32Array} p
 * @param {number} t
 * @param {number} x
 * @param {number} y
 * @returns {number | null}
 */
function heightAt(p, t, x, y) {
  const ux = p[t + 3] - p[t], uy = p[t + 4] - p[t + 1], vx = p[t + 6] - p[t], vy = p[t + 7] - p[t + 1];
  const whole = ux * vy - uy * vx;
  if (whole === 0) return null;
  const dx = x - p[t], dy = y - p[t + 1];
  const a = (dx * vy - dy * vx) / whole, b = (ux * dy - uy * dx) / whole;
  if (a < 0 || b < 0 || a + b > 1) return null;
  return p[t + 2] + a * (p[t + 5] - p[t + 2]) + b * (p[t + 8] - p[t + 2]);
}

/**
 * Columns of support: under each overhang, down to the surface below it or to the plate.
 *
 * @param {ReturnType<typeof hitsOf>} lines
 * @param {number} angleDeg
 * @returns {{x: number, y: number, low: number, high: number}[]}
 */
function columnsIn(lines, angleDeg) {
  const limit = -Math.cos(angleDeg * Math.PI / 180);
  const columns = [];
  for (const { x, y, hits } of lines.values()) {
    let low = 0;
    for (const { z, nz } of hits) {
      if (nz < limit && z - low > CONTACT_GAP) columns.push({ x, y, low, high: z });
      low = z;
    }
  }
  return columns;
}

/**
 * Columns as square prisms without their ends.
 *
 * @param {ReturnType<typeof columnsIn>} columns
 * @param {number} width
 * @returns {Float32Array} nine coordinates per triangle
 */
function prismsOf(columns, width) {
  const points = new Float32Array(columns.length * 8 * 9);
  const half = width / 2;
  let at = 0;
  for (const { x, y, low, high } of columns) {
    const ring = [[x - half, y - half], [x + half, y - half], [x + half, y + half], [x - half, y + half]];
    for (let i = 0; i < 4; ++i) {
      const [ax, ay] = ring[i], [bx, by] = ring[(i + 1) % 4];
      points.set([ax, ay, low, bx, by, low, bx, by, high, ax, ay, low, bx, by, high, ax, ay, high], at);
      at += 18;
    }
  }
  return points;
}

/**
 * What the page holds as JSON, written by tesk-orient: see apps/tesk-orient/page/Page.h.
 *
 * @typedef {{totalMm: number, supportVolumeMm: number, overhangAreaMm: number, heightMm: number}} Cost
 *
 * @typedef {object} Pose  `matrix` is for row vectors: [x y z 1] * matrix
 * @property {number} [rank]  none for the part as it lies
 * @property {number} heightMm
 * @property {number[]} footprintMm
 * @property {number} supportVolumeMm3
 * @property {number} overhangAreaMm2
 * @property {number} overhangAreaOnPartMm2
 * @property {number} contactAreaMm2
 * @property {number} contactIslands
 * @property {number} tiltMarginDeg
 * @property {boolean} stands
 * @property {Cost} cost
 * @property {number} supportFilamentMm
 * @property {number[]} up
 * @property {{axis: number[], angleDeg: number}} turn
 * @property {number[][]} matrix
 *
 * @typedef {{code: string, text: string}} Warning
 *
 * @typedef {object} PackedMesh  numbers are little-endian
 * @property {number} vertices
 * @property {number} triangles
 * @property {number} sourceTriangles  how many the part has
 * @property {number} deviationMm
 * @property {number[]} originMm
 * @property {number[]} stepMm
 * @property {string} positions  base64, 16 bits each
 * @property {number} indexBits
 * @property {string} indices  base64
 *
 * @typedef {object} PartData
 * @property {string} name
 * @property {string} partNumber
 * @property {number} copies
 * @property {string} reason
 * @property {{triangles: number, vertices: number, sizeMm: number[], warnings: Warning[]}} input
 * @property {number} chosenRank
 * @property {boolean} noneStands
 * @property {Record<string, number>} passedOver
 * @property {Pose} asItLies
 * @property {Pose[]} poses
 * @property {PackedMesh} mesh
 *
 * @typedef {object} PageData
 * @property {string} schema
 * @property {string} title
 * @property {{name: string, version: string}} program
 * @property {string} three
 * @property {{material: string, diameterMm: number, densityGPerCm3: number}} filament
 * @property {Record<string, any>} settings
 * @property {Warning[]} [warnings]  about the plate and not about one part
 * @property {PartData[]} objects
 */

/**
 * @param {string} base64
 * @param {number} bits  of each number, 16 or 32
 * @returns {Uint32Array}
 */
function numbersOf(base64, bits) {
  const bytes = atob(base64);
  const width = bits / 8;
  const numbers = new Uint32Array(bytes.length / width);
  for (let i = 0; i < numbers.length; ++i) {
    let number = 0;
    for (let k = width - 1; k >= 0; --k) number = number * 256 + bytes.charCodeAt(i * width + k);
    numbers[i] = number;
  }
  return numbers;
}

/**
 * A mesh about the centre of its own box, in mm.
 *
 * @param {PackedMesh} packed
 * @returns {{positions: Float32Array, corners: Uint32Array}}
 */
function meshOf(packed) {
  const numbers = numbersOf(packed.positions, 16);
  const positions = new Float32Array(numbers.length);
  const middle = 65535 / 2;
  for (let i = 0; i < numbers.length; ++i) {
    positions[i] = (numbers[i] - middle) * packed.stepMm[i % 3];
  }
  return { positions, corners: numbersOf(packed.indices, packed.indexBits) };
}

/**
 * The mass of a length of filament.
 *
 * @param {number} lengthMm
 * @param {PageData["filament"]} filament
 * @returns {number} g
 */
function gramsOf(lengthMm, filament) {
  const areaMm2 = Math.PI * filament.diameterMm * filament.diameterMm / 4;
  return lengthMm * areaMm2 * filament.densityGPerCm3 / 1000;
}

/**
 * @param {number} value
 * @param {number} [places]
 * @returns {string} with thousands apart, and no minus before zero
 */
function numberText(value, places = 0) {
  const rounded = Number(value.toFixed(places)) + 0;
  const text = rounded.toLocaleString("en-GB", { minimumFractionDigits: places, maximumFractionDigits: places });
  return text.replace("-", "−");
}

/**
 * @param {number} grams
 * @returns {string}
 */
function gramsText(grams) {
  return numberText(grams, grams < 100 ? 1 : 0) + " g";
}

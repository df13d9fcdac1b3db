/** The colours that the pictures take from the style sheet, by its names. */
const COLOR_NAMES = [
  "part", "inside", "crease", "over-steep", "over-flat", "on-steep", "on-flat", "touch", "prop", "plate", "grid",
];

/**
 * @returns {Record<string, any>} a THREE.Color for each name
 */
function readPalette() {
  const style = getComputedStyle(document.documentElement);
  /** @type {Record<string, any>} */
  const palette = {};
  for (const name of COLOR_NAMES) palette[name] = new THREE.Color(style.getPropertyValue("--" + name).trim());
  return palette;
}

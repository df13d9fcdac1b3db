/** @param {Pose} pose @returns {string} */
function sizeText(pose) {
  const size = [pose.footprintMm[0], pose.footprintMm[1], pose.heightMm];
  return size.map((length) => numberText(length, 1)).join(" × ") + " mm";
}

/**
 * @param {Pose} pose
 * @param {PageData["filament"]} filament
 * @returns {string}
 */
function supportText(pose, filament) {
  const length = pose.supportFilamentMm;
  return length < 0.5 ? "no support" : gramsText(gramsOf(length, filament)) + " support";
}

/**
 * The few figures that matter most, beside those of the part as it lies.
 *
 * @param {HTMLElement} list
 * @param {Pose} pose
 * @param {Pose} lies
 * @param {PageData["filament"]} filament
 */
function fillFigures(list, pose, lies, filament) {
  const figures = [
    ["Support filament, about", (/** @type {Pose} */ p) => numberText(p.supportFilamentMm) + " mm"],
    ["Support mass, about", (/** @type {Pose} */ p) => gramsText(gramsOf(p.supportFilamentMm, filament))],
    ["Height", (/** @type {Pose} */ p) => numberText(p.heightMm, 1) + " mm"],
    ["Contact with the plate", (/** @type {Pose} */ p) => numberText(p.contactAreaMm2) + " mm²"],
    ["Stands by itself", (/** @type {Pose} */ p) => (p.stands ? "yes" : "no")],
  ];
  list.replaceChildren();
  for (const [name, text] of /** @type {[string, (p: Pose) => string][]} */ (figures)) {
    const value = element("dd", {});
    value.append(element("span", { class: "large" }, text(pose)));
    if (pose !== lies) value.append(element("span", { class: "than" }, "as it lies: " + text(lies)));
    const group = element("div", {});
    group.append(element("dt", {}, name), value);
    list.append(group);
  }
}

/** @param {Record<string, number>} [passed] @returns {string} */
function passedText(passed) {
  if (!passed) return "";
  /** @type {Record<string, string>} */
  const reasons = {
    tooLarge: "did not fit the build volume", keptOff: "would put a face down that is kept off",
    littleContact: "touched the plate too little", cannotStand: "did not stand by itself",
  };
  const parts = Object.keys(reasons).filter((key) => passed[key] > 0)
    .map((key) => `${passed[key]} ${reasons[key]}`);
  return parts.length === 0 ? "" : "Poses passed over: " + parts.join(", ") + ".";
}

/**
 * The plate of the settings, or one that all poses have room on.
 *
 * @param {Pose[]} poses
 * @param {Record<string, any>} settings
 * @returns {number[]} mm
 */
function plateSizeOf(poses, settings) {
  const room = settings.buildVolumeMm || [0, 0, 0];
  if (room[0] > 0 && room[1] > 0) return [room[0], room[1]];
  const largest = Math.max(...poses.map((pose) => Math.max(...pose.footprintMm)), 1e-3);
  const step = largest < 10 ? 1 : 10;
  const side = 2 * step * Math.ceil(1.2 * largest / (2 * step));
  return [side, side];
}

/** @param {PageData} page */
function fillFooter(page) {
  const settings = page.settings;
  const list = /** @type {HTMLElement} */ (document.getElementById("settings"));
  const add = (/** @type {string} */ name, /** @type {string} */ text) => {
    const group = element("div", {});
    group.append(element("dt", {}, name), element("dd", {}, text));
    list.append(group);
  };
  add("Goal", String(settings.goal));
  add("Overhang angle, from the plate", numberText(settings.overhangAngleDeg, 1) + "°");
  add("Cost of support", `${numberText(settings.supportVolumeCost, 3)} mm of filament per mm³`);
  add("Cost of overhang", `${numberText(settings.overhangAreaCost, 3)} mm per mm²`);
  add("Cost of height", `${numberText(settings.heightCost, 2)} mm per mm`);
  const room = settings.buildVolumeMm || [0, 0, 0];
  const texts = (/** @type {number[]} */ values, /** @type {number} */ places) =>
    values.map((value) => numberText(value, places));
  if (Math.max(...room) > 0) add("Build volume", texts(room, 0).join(" × ") + " mm");
  for (const rule of settings.keepOff || []) {
    add("Kept off the plate", `(${texts(rule.direction, 2).join(", ")}) within ${numberText(rule.angleDeg)}°`);
  }
  const triangles = page.objects.reduce((sum, part) => sum + part.mesh.sourceTriangles, 0);
  add("Mesh", `${numberText(triangles)} triangles`);
  add("Made by", `${page.program.name} ${page.program.version}, drawn by three.js ${page.three}`);
  const { material, diameterMm, densityGPerCm3 } = page.filament;
  /** @type {HTMLElement} */ (document.getElementById("method")).textContent =
    `Lengths are in mm. Support filament is a prediction, for filament of ${diameterMm} mm; its mass is that of ` +
    `${material} at ${densityGPerCm3} g/cm³. A pose's cost is in mm of filament: support, overhanging surface and ` +
    "height together. " +
    "Strength across layers and the look of surfaces are not judged.";
}

/**
 * The sections, and links to them where there are several.
 *
 * @param {PageData} page
 * @returns {Section[]}
 */
function fillSections(page) {
  const template = /** @type {HTMLTemplateElement} */ (document.getElementById("object"));
  const main = /** @type {HTMLElement} */ (document.getElementById("objects"));
  const contents = /** @type {HTMLElement} */ (document.getElementById("contents"));
  /** @type {{painter: Painter, thumb: View, queue: Queue} | null} */
  let drawing = null;
  if (hasWebGL()) {
    const painter = new Painter();
    drawing = { painter, thumb: new View(painter), queue: new Queue() };
  } else {
    /** @type {HTMLElement} */ (document.getElementById("no-pictures")).hidden = false;
  }
  contents.hidden = page.objects.length === 1;
  return page.objects.map((data, i) => {
    const root = /** @type {HTMLElement} */ (document.importNode(template.content, true).firstElementChild);
    root.id = "part-" + (i + 1);
    main.append(root);
    const item = element("li", {});
    item.append(element("a", { href: "#" + root.id }, data.name || "Part " + (i + 1)));
    inside(contents, "ul").append(item);
    return new Section(data, page, root, drawing);
  });
}

/** Redraws when the colours change, and in light ones for paper. */
function followColors(/** @type {Section[]} */ sections) {
  const recolor = () => {
    const [first] = sections;
    if (!first || !first.drawing) return;
    first.drawing.painter.palette = readPalette();
    first.drawing.thumb.recolor();
    for (const section of sections) section.recolor();
  };
  matchMedia("(prefers-color-scheme: dark)").addEventListener("change", recolor);
  window.addEventListener("beforeprint", () => {
    document.documentElement.setAttribute("data-paper", "");
    recolor();
  });
  window.addEventListener("afterprint", () => {
    document.documentElement.removeAttribute("data-paper");
    recolor();
  });
}

function openPage() {
  const text = /** @type {HTMLElement} */ (document.getElementById("data")).textContent;
  const page = /** @type {PageData} */ (JSON.parse(text || ""));
  fillWarnings(/** @type {HTMLElement} */ (document.getElementById("plate-warnings")), page.warnings || []);
  fillFooter(page);
  followColors(fillSections(page));
}

if (typeof document !== "undefined") openPage();

/**
 * A column of the table: its value decides the order, its text is shown.
 *
 * @typedef {{name: string, unit: string, value: (pose: Pose) => number, text: (pose: Pose) => string}} Column
 */

/**
 * @param {PageData["filament"]} filament
 * @returns {Column[]}
 */
function columnsOf(filament) {
  const column = (
    /** @type {string} */ name, /** @type {string} */ unit,
    /** @type {(pose: Pose) => number} */ value, /** @type {number} */ places,
  ) => ({ name, unit, value, text: (/** @type {Pose} */ pose) => numberText(value(pose), places) });
  return [
    column("Support", "mm, about", (p) => p.supportFilamentMm, 0),
    column("Support", "g, about", (p) => gramsOf(p.supportFilamentMm, filament), 1),
    column("Overhang", "mm²", (p) => p.overhangAreaMm2, 0),
    column("On the part", "mm² of it", (p) => p.overhangAreaOnPartMm2, 0),
    column("Contact", "mm²", (p) => p.contactAreaMm2, 0),
    column("Height", "mm", (p) => p.heightMm, 1),
    {
      name: "Footprint", unit: "mm", value: (p) => p.footprintMm[0] * p.footprintMm[1],
      text: (p) => numberText(p.footprintMm[0], 1) + " × " + numberText(p.footprintMm[1], 1),
    },
    {
      name: "Falls at", unit: "° of tilt", value: (p) => p.tiltMarginDeg,
      text: (p) => (p.tiltMarginDeg < 0 ? "–" : numberText(p.tiltMarginDeg)),
    },
    column("Cost", "low is better", (p) => p.cost.totalMm, 0),
    { name: "Stands", unit: "by itself", value: (p) => (p.stands ? 0 : 1), text: (p) => (p.stands ? "yes" : "no") },
  ];
}

/** @param {Pose} pose @returns {string} */
function poseName(pose) {
  return pose.rank ? "Pose " + pose.rank : "As it lies";
}

/**
 * Fills a table with poses, a row each, and lets its columns be sorted.
 *
 * @param {HTMLTableElement} table
 * @param {Pose[]} poses
 * @param {Column[]} columns
 * @param {(pose: Pose) => void} pick
 * @returns {Map<Pose, HTMLTableRowElement>}
 */
function fillTable(table, poses, columns, pick) {
  const head = /** @type {HTMLTableRowElement} */ (table.tHead && table.tHead.rows[0]);
  const body = table.tBodies[0];
  /** @type {Map<Pose, HTMLTableRowElement>} */
  const rows = new Map();
  for (const pose of poses) {
    const row = body.insertRow();
    const name = element("th", { scope: "row" });
    const button = element("button", { type: "button" }, poseName(pose));
    button.addEventListener("click", () => pick(pose));
    name.append(button);
    row.append(name);
    for (const column of columns) row.append(element("td", {}, column.text(pose)));
    rows.set(pose, row);
  }
  const rank = { name: "Pose", unit: "", value: (/** @type {Pose} */ p) => p.rank || 99, text: poseName };
  for (const column of [rank, ...columns]) {
    head.append(headOf(column, (ascending) => {
      const sign = ascending ? 1 : -1;
      const sorted = [...poses].sort((a, b) => sign * (column.value(a) - column.value(b)));
      body.append(...sorted.map((pose) => /** @type {HTMLElement} */ (rows.get(pose))));
    }));
  }
  markSorted(head, /** @type {HTMLElement} */ (head.cells[0]), "ascending");
  return rows;
}

/**
 * @param {Column} column
 * @param {(ascending: boolean) => void} sort
 * @returns {HTMLElement}
 */
function headOf(column, sort) {
  const cell = element("th", { scope: "col" });
  const button = element("button", { type: "button" }, column.name);
  button.append(element("span", { class: "arrow", "aria-hidden": "true" }));
  if (column.unit) button.append(element("span", { class: "unit" }, column.unit));
  button.addEventListener("click", () => {
    const ascending = cell.getAttribute("aria-sort") !== "ascending";
    sort(ascending);
    markSorted(/** @type {HTMLElement} */ (cell.parentElement), cell, ascending ? "ascending" : "descending");
  });
  cell.append(button);
  return cell;
}

/**
 * @param {HTMLElement} head
 * @param {HTMLElement} cell
 * @param {string} order
 */
function markSorted(head, cell, order) {
  for (const other of head.children) {
    other.removeAttribute("aria-sort");
    /** @type {HTMLElement} */ (other.querySelector(".arrow")).textContent = "";
  }
  cell.setAttribute("aria-sort", order);
  /** @type {HTMLElement} */ (cell.querySelector(".arrow")).textContent = order === "ascending" ? " ↑" : " ↓";
}

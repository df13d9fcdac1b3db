/**
 * An element with attributes and text. What comes from files goes in as text only.
 *
 * @param {string} tag
 * @param {Record<string, string>} attributes
 * @param {string} [text]
 * @returns {HTMLElement}
 */
function element(tag, attributes, text) {
  const made = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) made.setAttribute(name, value);
  if (text !== undefined) made.textContent = text;
  return made;
}

/**
 * @param {ParentNode} root
 * @param {string} selector
 * @returns {any}
 */
function inside(root, selector) {
  return root.querySelector(selector);
}

/** @param {string} text @returns {string} */
function capitalized(text) {
  return text.charAt(0).toUpperCase() + text.slice(1) + (text.endsWith(".") ? "" : ".");
}

/**
 * @param {HTMLElement} list
 * @param {Warning[]} warnings
 */
function fillWarnings(list, warnings) {
  for (const warning of warnings) list.append(element("li", {}, capitalized(warning.text)));
  list.hidden = warnings.length === 0;
}

/** Work for when the browser has time, one piece at a time, so that the page opens at once. */
class Queue {
  constructor() {
    /** @type {(() => void)[]} */
    this.work = [];
  }

  /** @param {() => void} piece */
  add(piece) {
    this.work.push(piece);
    if (this.work.length === 1) requestAnimationFrame(() => this.next());
  }

  next() {
    this.work[0]();
    this.work.shift();
    if (this.work.length > 0) requestAnimationFrame(() => this.next());
  }
}

/** One part of the page. */
class Section {
  /**
   * @param {PartData} data
   * @param {PageData} page
   * @param {HTMLElement} root
   * @param {{painter: Painter, thumb: View, queue: Queue} | null} drawing
   */
  constructor(data, page, root, drawing) {
    this.data = data;
    this.page = page;
    this.root = root;
    this.drawing = drawing;
    this.status = /** @type {HTMLElement} */ (document.getElementById("status"));
    this.angleDeg = page.settings.overhangAngleDeg;
    this.pose = data.poses[data.chosenRank - 1] || data.poses[0] || data.asItLies;
    this.orbit = newOrbit();
    /** @type {Map<Pose, HTMLElement>} */
    this.cards = new Map();
    /** @type {Map<Pose, Map<any, any>>} */
    this.hits = new Map();
    this.fillText();
    this.rows = fillTable(inside(root, "table"), [...data.poses, data.asItLies], columnsOf(page.filament),
      (pose) => this.pick(pose));
    this.fillCards();
    this.setControls();
    this.setPictures();
    this.showPose();
  }

  fillText() {
    const { data, root } = this;
    const name = [data.name, data.partNumber, data.copies > 1 ? data.copies + " pieces" : ""].filter(Boolean);
    inside(root, ".name").textContent = name.join(" · ");
    // The title says it already, but headings have to go level by level.
    inside(root, ".name").classList.toggle("unseen", this.page.objects.length === 1);
    inside(root, ".reason").textContent = data.reason;
    fillWarnings(inside(root, ".warnings"), data.input.warnings);
    inside(root, "caption span").textContent =
      "Measured at an overhang angle of " + numberText(this.page.settings.overhangAngleDeg) +
      "°. A column's heading sorts by it; a pose's name shows it above.";
    inside(root, ".table").setAttribute("aria-label", "Table of poses" + (data.name ? ", " + data.name : ""));
    const { triangles, sourceTriangles, deviationMm } = data.mesh;
    inside(root, ".simplified").hidden = triangles === sourceTriangles;
    inside(root, ".simplified").textContent =
      `The pictures show ${numberText(triangles)} of the part's ${numberText(sourceTriangles)} triangles, ` +
      `its surface moved by about ${numberText(deviationMm, 3)} mm. The figures are those of the full part.`;
    inside(root, ".passed").textContent = passedText(data.passedOver);
    inside(root, ".passed").hidden = !inside(root, ".passed").textContent;
  }

  fillCards() {
    const list = inside(this.root, ".cards");
    for (const pose of [...this.data.poses, this.data.asItLies]) {
      const button = element("button", { type: "button", "aria-pressed": "false" });
      const canvas = element("canvas", { "aria-hidden": "true" });
      canvas.hidden = !this.drawing;
      button.append(canvas, element("strong", {}, poseName(pose)));
      for (const text of [
        supportText(pose, this.page.filament), numberText(pose.heightMm, 1) + " mm high",
        pose.stands ? numberText(pose.contactAreaMm2) + " mm² contact" : "does not stand",
      ]) {
        button.append(element("span", {}, text));
      }
      button.addEventListener("click", () => this.pick(pose));
      const item = element("li", {});
      item.append(button);
      list.append(item);
      this.cards.set(pose, button);
    }
  }

  setControls() {
    const slider = inside(this.root, "input[type=range]");
    slider.id = "angle-" + this.page.objects.indexOf(this.data);
    inside(this.root, ".angle label").htmlFor = slider.id;
    slider.value = String(this.angleDeg);
    slider.addEventListener("input", () => {
      this.angleDeg = Number(slider.value);
      this.showAngle();
    });
    inside(this.root, ".columns").addEventListener("change", () => this.showAngle());
    for (const button of this.root.querySelectorAll("[data-view]")) {
      button.addEventListener("click", () => {
        const view = /** @type {keyof typeof VIEWS} */ (button.getAttribute("data-view"));
        Object.assign(this.orbit, newOrbit(), VIEWS[view]);
        this.fitPitch = this.orbit.pitch;
        this.redraw();
      });
    }
  }

  setPictures() {
    this.fitPitch = this.orbit.pitch;
    this.isWaiting = false;
    inside(this.root, ".stage").hidden = !this.drawing;
    inside(this.root, ".controls").hidden = !this.drawing;
    if (!this.drawing) return;
    const { painter } = this.drawing;
    this.part = partOf(this.data.mesh);
    this.plateSize = plateSizeOf([...this.data.poses, this.data.asItLies], this.page.settings);
    this.canvases = [inside(this.root, ".chosen canvas"), inside(this.root, ".lies canvas")];
    this.views = this.canvases.map(() => new View(painter));
    this.views[1].show(this.part, this.data.asItLies, this.plateSize);
    const observer = new ResizeObserver(() => this.redraw());
    for (const canvas of this.canvases) {
      steer(canvas, this.orbit, () => this.mmPerPixel(), () => this.redraw());
      observer.observe(canvas);
    }
    this.drawCards();
  }

  drawCards() {
    for (const [pose, button] of this.cards) {
      if (this.drawing) this.drawing.queue.add(() => this.drawCard(pose, button));
    }
  }

  /**
   * @param {Pose} pose
   * @param {HTMLElement} button
   */
  drawCard(pose, button) {
    if (!this.drawing) return;
    const { thumb } = this.drawing;
    const canvas = /** @type {HTMLCanvasElement} */ (button.querySelector("canvas"));
    canvas.width = 320;
    canvas.height = 240;
    thumb.show(/** @type {Part} */ (this.part), pose, /** @type {number[]} */ (this.plateSize));
    const orbit = newOrbit();
    const scale = thumb.fit(canvas.width, canvas.height, orbit.pitch);
    thumb.draw(canvas, orbit, scale, this.page.settings.overhangAngleDeg);
  }

  /** @param {Pose} pose */
  pick(pose) {
    this.pose = pose;
    this.showPose();
    this.status.textContent = `${poseName(pose)} is shown: ${supportText(pose, this.page.filament)}, ` +
      `${numberText(pose.heightMm, 1)} mm high.`;
  }

  /** Shows the picked pose. */
  showPose() {
    const { pose, data, root } = this;
    for (const [other, card] of this.cards) card.setAttribute("aria-pressed", String(other === pose));
    for (const [other, row] of this.rows) {
      if (other === pose) row.setAttribute("aria-current", "true");
      else row.removeAttribute("aria-current");
    }
    const chosen = pose.rank !== undefined && pose.rank === data.chosenRank;
    inside(root, ".chosen .label").textContent = poseName(pose) + (chosen ? ", chosen" : "");
    inside(root, ".chosen .sub").textContent = sizeText(pose);
    inside(root, ".lies .sub").textContent = sizeText(data.asItLies);
    fillFigures(inside(root, ".figures"), pose, data.asItLies, this.page.filament);
    if (!this.drawing || !this.views) return;
    this.views[0].show(/** @type {Part} */ (this.part), pose, /** @type {number[]} */ (this.plateSize));
    const names = [poseName(pose), "As it lies in its file"];
    names.forEach((name, i) => {
      const canvas = /** @type {HTMLCanvasElement[]} */ (this.canvases)[i];
      canvas.setAttribute("aria-label", `${data.name || this.page.title}: ${name}, on the build plate`);
    });
    this.showAngle();
  }

  /** Shows overhangs and support at the slider's angle. */
  showAngle() {
    const { root, angleDeg } = this;
    inside(root, "output").textContent = numberText(angleDeg) + "°";
    if (!this.views) return;
    const isOn = inside(root, ".columns").checked;
    const poses = [this.pose, this.data.asItLies];
    poses.forEach((pose, i) => {
      /** @type {View[]} */ (this.views)[i].setColumns(isOn ? this.prismsFor(pose) : null);
    });
    const area = numberText(overhangArea(this.pointsOf(this.pose), angleDeg));
    const measured = this.page.settings.overhangAngleDeg;
    inside(root, ".hint").textContent = `${area} mm² hang over at this angle.` +
      (angleDeg === measured ? "" : ` The figures are for ${numberText(measured)}°.`);
    this.redraw();
  }

  /** @param {Pose} pose @returns {Float32Array} */
  pointsOf(pose) {
    const part = /** @type {Part} */ (this.part);
    return onPlate(part.points, pose.matrix, boundsOf(part.positions, pose.matrix), false);
  }

  /** @param {Pose} pose @returns {Float32Array} */
  prismsFor(pose) {
    const pitch = Math.max(pose.footprintMm[0], pose.footprintMm[1], 1e-3) / 36;
    let lines = this.hits.get(pose);
    if (!lines) {
      lines = hitsOf(this.pointsOf(pose), pitch);
      this.hits.set(pose, lines);
    }
    return prismsOf(columnsIn(/** @type {any} */ (lines), this.angleDeg), 0.4 * pitch);
  }

  /** @returns {number} mm for a pixel of CSS, the same in both views */
  mmPerPixel() {
    if (!this.views || !this.canvases) return 1;
    const fits = this.views.map((view, i) => {
      const { clientWidth, clientHeight } = /** @type {HTMLCanvasElement[]} */ (this.canvases)[i];
      return view.fit(Math.max(clientWidth, 1), Math.max(clientHeight, 1), /** @type {number} */ (this.fitPitch));
    });
    return Math.max(...fits) / this.orbit.zoom;
  }

  /** Draws soon, once however often it is called. */
  redraw() {
    if (this.isWaiting) return;
    this.isWaiting = true;
    requestAnimationFrame(() => {
      this.isWaiting = false;
      this.draw();
    });
  }

  draw() {
    if (!this.views || !this.canvases) return;
    const scale = this.mmPerPixel();
    const isPaper = document.documentElement.hasAttribute("data-paper");
    const dots = isPaper ? 2 : Math.min(window.devicePixelRatio || 1, 2);
    this.views.forEach((view, i) => {
      const canvas = /** @type {HTMLCanvasElement[]} */ (this.canvases)[i];
      const width = Math.max(1, Math.round(canvas.clientWidth * dots));
      const height = Math.max(1, Math.round(canvas.clientHeight * dots));
      if (canvas.width !== width) canvas.width = width;
      if (canvas.height !== height) canvas.height = height;
      view.draw(canvas, this.orbit, scale / dots, this.angleDeg);
    });
  }

  recolor() {
    if (this.views) for (const view of this.views) view.recolor();
    this.draw();
    for (const [pose, button] of this.cards) this.drawCard(pose, button);
  }
}

const STANDARD_ORBIT = { yaw: -0.55, pitch: 0.42 };

/** What the buttons show. */
const VIEWS = {
  default: STANDARD_ORBIT,
  below: { yaw: -0.55, pitch: -0.6 },
  front: { yaw: 0, pitch: 0 },
  top: { yaw: 0, pitch: Math.PI / 2 },
};

/** @returns {Orbit} */
function newOrbit() {
  return { ...STANDARD_ORBIT, zoom: 1, pan: [0, 0] };
}

/**
 * @param {Orbit} orbit
 * @param {number} dx  to the right, in radians
 * @param {number} dy  downwards
 */
function turnBy(orbit, dx, dy) {
  orbit.yaw -= dx;
  orbit.pitch = Math.max(-Math.PI / 2, Math.min(Math.PI / 2, orbit.pitch + dy));
}

/**
 * @param {Orbit} orbit
 * @param {number} factor  above 1 to see more closely
 */
function zoomBy(orbit, factor) {
  orbit.zoom = Math.max(0.2, Math.min(60, orbit.zoom * factor));
}

/**
 * Lets a canvas be turned, zoomed and moved by mouse, touch and keys.
 *
 * @param {HTMLCanvasElement} canvas
 * @param {Orbit} orbit
 * @param {() => number} mmPerPixel  as shown, of CSS pixels
 * @param {() => void} changed
 */
function steer(canvas, orbit, mmPerPixel, changed) {
  /** @type {Map<number, number[]>} */
  const fingers = new Map();
  const move = (/** @type {number} */ dx, /** @type {number} */ dy) => {
    orbit.pan[0] += dx * mmPerPixel();
    orbit.pan[1] -= dy * mmPerPixel();
  };
  canvas.addEventListener("pointerdown", (event) => {
    canvas.setPointerCapture(event.pointerId);
    fingers.set(event.pointerId, [event.clientX, event.clientY]);
  });
  for (const end of ["pointerup", "pointercancel"]) {
    canvas.addEventListener(end, (event) => fingers.delete(/** @type {PointerEvent} */ (event).pointerId));
  }
  canvas.addEventListener("pointermove", (event) => {
    const last = fingers.get(event.pointerId);
    if (!last) return;
    const dx = event.clientX - last[0], dy = event.clientY - last[1];
    if (fingers.size === 2) {
      const other = [...fingers].filter(([id]) => id !== event.pointerId)[0][1];
      const before = Math.hypot(last[0] - other[0], last[1] - other[1]);
      const after = Math.hypot(event.clientX - other[0], event.clientY - other[1]);
      if (before > 0 && after > 0) zoomBy(orbit, after / before);
      move(dx / 2, dy / 2);
    } else if (event.shiftKey || event.buttons === 2 || event.buttons === 4) {
      move(dx, dy);
    } else {
      turnBy(orbit, dx * 0.01, dy * 0.01);
    }
    fingers.set(event.pointerId, [event.clientX, event.clientY]);
    changed();
  });
  canvas.addEventListener("contextmenu", (event) => event.preventDefault());
  canvas.addEventListener("dblclick", () => {
    Object.assign(orbit, newOrbit());
    changed();
  });
  canvas.addEventListener("wheel", (event) => {
    event.preventDefault();
    const pixels = event.deltaY * (event.deltaMode === 1 ? 20 : 1);
    zoomBy(orbit, Math.exp(-0.0015 * pixels));
    changed();
  }, { passive: false });
  canvas.addEventListener("keydown", (event) => {
    if (event.ctrlKey || event.altKey || event.metaKey || !steerByKey(orbit, event, move)) return;
    event.preventDefault();
    changed();
  });
}

/**
 * @param {Orbit} orbit
 * @param {{key: string, shiftKey: boolean}} event
 * @param {(dx: number, dy: number) => void} move  by pixels
 * @returns {boolean} whether the key means anything
 */
function steerByKey(orbit, event, move) {
  /** @type {Record<string, number[]>} */
  const arrows = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };
  const arrow = arrows[event.key];
  if (arrow && event.shiftKey) move(20 * arrow[0], 20 * arrow[1]);
  else if (arrow) turnBy(orbit, 0.1 * arrow[0], 0.1 * arrow[1]);
  else if (event.key === "+" || event.key === "=") zoomBy(orbit, 1.2);
  else if (event.key === "-") zoomBy(orbit, 1 / 1.2);
  else if (event.key === "0" || event.key === "Home") Object.assign(orbit, newOrbit());
  else return false;
  return true;
}

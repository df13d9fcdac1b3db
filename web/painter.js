/**
 * How a section's views are turned: angles in radians, what is looked at moved by `pan` in mm.
 *
 * @typedef {{yaw: number, pitch: number, zoom: number, pan: number[]}} Orbit
 *
 * @typedef {{points: Float32Array, positions: Float32Array, geometry: any, creases: any}} Part
 */

/** Beyond this the lines of a drawing only darken a part, and take long to find. */
const MOST_FOR_CREASES = 120000;
/** Pixels along the side of the picture from below. */
const BELOW_SIZE = 1024;

/**
 * A part for drawing.
 *
 * @param {PackedMesh} packed
 * @returns {Part}
 */
function partOf(packed) {
  const { positions, corners } = meshOf(packed);
  const { points, normals } = facetsOf(positions, corners);
  const geometry = new THREE.BufferGeometry();
  geometry.setAttribute("position", new THREE.BufferAttribute(points, 3));
  geometry.setAttribute("normal", new THREE.BufferAttribute(normals, 3));
  const creases = new THREE.BufferGeometry();
  const lines = packed.triangles > MOST_FOR_CREASES ? new Float32Array(0) : creasesOf(positions, corners, normals);
  creases.setAttribute("position", new THREE.BufferAttribute(lines, 3));
  return { points, positions, geometry, creases };
}

/** @returns {boolean} whether this browser draws in 3D */
function hasWebGL() {
  try {
    return document.createElement("canvas").getContext("webgl") !== null;
  } catch (error) {
    return false;
  }
}

/** One WebGL canvas that is never shown: browsers allow a page few of them. Pictures are copied from it. */
class Painter {
  constructor() {
    this.renderer = new THREE.WebGLRenderer({ alpha: true, antialias: true });
    this.renderer.setClearColor(0x000000, 0);
    this.renderer.setScissorTest(true);
    this.width = 0;
    this.height = 0;
    this.palette = readPalette();
  }

  /**
   * @param {any} scene
   * @param {any} camera
   * @param {HTMLCanvasElement} canvas
   */
  draw(scene, camera, canvas) {
    const { width, height } = canvas;
    if (width > this.width || height > this.height) {
      this.width = Math.max(width, this.width);
      this.height = Math.max(height, this.height);
      this.renderer.setSize(this.width, this.height, false);
    }
    this.renderer.setViewport(0, 0, width, height);
    this.renderer.setScissor(0, 0, width, height);
    this.renderer.render(scene, camera);
    const to = canvas.getContext("2d");
    if (!to) return;
    to.clearRect(0, 0, width, height);
    to.drawImage(this.renderer.domElement, 0, this.height - height, width, height, 0, 0, width, height);
  }
}

/** A part on a plate, in one pose. */
class View {
  /**
   * @param {Painter} painter
   */
  constructor(painter) {
    this.painter = painter;
    this.camera = new THREE.OrthographicCamera(-1, 1, 1, -1, 0, 1);
    this.camera.up.set(0, 0, 1);
    this.target = new THREE.WebGLRenderTarget(BELOW_SIZE, BELOW_SIZE, {
      minFilter: THREE.NearestFilter, magFilter: THREE.NearestFilter,
    });
    const shared = {
      below: { value: this.target.texture }, belowView: { value: new THREE.Matrix4() }, belowRange: { value: 1 },
    };
    const light = { value: new THREE.Vector3() };
    this.partUniforms = { ...shared, texel: { value: 1 }, cosine: { value: 0.5 }, light };
    this.plateUniforms = { ...shared, mmPerPixel: { value: 1 } };
    this.scene = new THREE.Scene();
    this.depthScene = new THREE.Scene();
    this.buildScene();
    this.recolor();
    /** @type {Part | null} */
    this.part = null;
    this.bounds = { min: [0, 0, 0], max: [0, 0, 0] };
    this.plateSize = [1, 1];
  }

  buildScene() {
    const cover = { polygonOffset: true, polygonOffsetFactor: 1, polygonOffsetUnits: 1 };
    this.mesh = new THREE.Mesh(new THREE.BufferGeometry(), new THREE.ShaderMaterial({
      vertexShader: PART_VERTEX, fragmentShader: PART_FRAGMENT, uniforms: this.partUniforms,
      side: THREE.DoubleSide, ...cover,
    }));
    this.creases = new THREE.LineSegments(new THREE.BufferGeometry(), new THREE.LineBasicMaterial());
    this.columns = new THREE.Mesh(new THREE.BufferGeometry(), new THREE.MeshBasicMaterial({
      side: THREE.DoubleSide, transparent: true, opacity: 0.6,
    }));
    this.plate = new THREE.Mesh(new THREE.PlaneBufferGeometry(1, 1), new THREE.ShaderMaterial({
      vertexShader: PLATE_VERTEX, fragmentShader: PLATE_FRAGMENT, uniforms: this.plateUniforms,
      side: THREE.DoubleSide, transparent: true, depthWrite: false, extensions: { derivatives: true },
      // Behind what stands on it, also seen from below.
      polygonOffset: true, polygonOffsetFactor: 4, polygonOffsetUnits: 16,
    }));
    this.columns.renderOrder = 1;
    this.columns.visible = false;
    this.shadow = new THREE.Mesh(this.mesh.geometry, new THREE.MeshDepthMaterial({
      depthPacking: THREE.RGBADepthPacking, side: THREE.DoubleSide, blending: THREE.NoBlending,
    }));
    for (const object of [this.mesh, this.creases, this.shadow]) object.matrixAutoUpdate = false;
    for (const object of [this.mesh, this.creases, this.columns, this.plate, this.shadow]) object.frustumCulled = false;
    this.scene.add(this.mesh, this.creases, this.plate, this.columns);
    this.depthScene.add(this.shadow);
  }

  /** Takes the page's colours anew. */
  recolor() {
    const palette = this.painter.palette;
    const name = (/** @type {string} */ uniform) =>
      uniform.slice(1).replace(/([A-Z])/g, "-$1").slice(1).toLowerCase();
    const set = (/** @type {any} */ uniforms, /** @type {string[]} */ names) => {
      for (const uniform of names) uniforms[uniform] = { value: palette[name(uniform)] };
    };
    set(this.partUniforms, ["cPart", "cInside", "cTouch", "cOverSteep", "cOverFlat", "cOnSteep", "cOnFlat"]);
    set(this.plateUniforms, ["cPlate", "cGrid", "cTouch"]);
    this.creases.material.color = palette.crease;
    this.columns.material.color = palette.prop;
  }

  /**
   * @param {Part} part
   * @param {Pose} pose
   * @param {number[]} plateSize  mm
   */
  show(part, pose, plateSize) {
    this.part = part;
    this.pose = pose;
    this.plateSize = plateSize;
    this.bounds = boundsOf(part.positions, pose.matrix);
    const [x, y, z] = placeOf(this.bounds);
    const m = pose.matrix;
    // A row-vector matrix, row by row, is the same as THREE's, column by column.
    this.mesh.matrix.fromArray([...m[0].slice(0, 3), 0, ...m[1].slice(0, 3), 0, ...m[2].slice(0, 3), 0, x, y, z, 1]);
    for (const object of [this.creases, this.shadow]) object.matrix.copy(this.mesh.matrix);
    this.mesh.geometry = this.shadow.geometry = part.geometry;
    this.creases.geometry = part.creases;
    this.plate.geometry.dispose();
    this.plate.geometry = new THREE.PlaneBufferGeometry(plateSize[0], plateSize[1]);
    this.lookFromBelow();
  }

  /** @returns {number[]} the extents on the plate */
  size() {
    return [0, 1, 2].map((k) => this.bounds.max[k] - this.bounds.min[k]);
  }

  /** Draws the depth of the first surface above the plate, for the shaders. */
  lookFromBelow() {
    const [sx, sy, height] = this.size();
    const half = Math.max(sx, sy) * 0.51 + 0.1;
    const range = 1.1 * (height + 2);
    const camera = new THREE.OrthographicCamera(-half, half, half, -half, 0, range);
    camera.up.set(0, 1, 0);
    camera.position.set(0, 0, -1);
    camera.lookAt(0, 0, 0);
    camera.updateMatrixWorld();
    const renderer = this.painter.renderer;
    renderer.setRenderTarget(this.target);
    renderer.setClearColor(0xffffff, 1);
    renderer.clear();
    renderer.render(this.depthScene, camera);
    renderer.setRenderTarget(null);
    renderer.setClearColor(0x000000, 0);
    this.partUniforms.belowView.value.multiplyMatrices(camera.projectionMatrix, camera.matrixWorldInverse);
    this.partUniforms.belowRange.value = range;
    this.partUniforms.texel.value = 2 * half / BELOW_SIZE;
  }

  /**
   * @param {Float32Array | null} points  of prismsOf()
   */
  setColumns(points) {
    this.columns.visible = points !== null;
    if (!points) return;
    this.columns.geometry.dispose();
    this.columns.geometry = new THREE.BufferGeometry();
    this.columns.geometry.setAttribute("position", new THREE.BufferAttribute(points, 3));
  }

  /**
   * The scale at which the part fills a canvas, seen from a height.
   *
   * @param {number} width
   * @param {number} height
   * @param {number} pitch
   * @returns {number} mm per pixel
   */
  fit(width, height, pitch) {
    const [sx, sy, sz] = this.size();
    const across = Math.hypot(sx, sy);
    const upright = sz * Math.cos(pitch) + across * Math.abs(Math.sin(pitch));
    return 1.12 * Math.max(across / width, upright / height, 1e-6);
  }

  /**
   * @param {HTMLCanvasElement} canvas
   * @param {Orbit} orbit
   * @param {number} mmPerPixel  of the canvas's own pixels
   * @param {number} angleDeg
   */
  draw(canvas, orbit, mmPerPixel, angleDeg) {
    const { yaw, pitch, pan } = orbit;
    const away = new THREE.Vector3(
      Math.sin(yaw) * Math.cos(pitch), -Math.cos(yaw) * Math.cos(pitch), Math.sin(pitch));
    const right = new THREE.Vector3(Math.cos(yaw), Math.sin(yaw), 0);
    const up = new THREE.Vector3().crossVectors(away, right);
    const middle = new THREE.Vector3(0, 0, this.size()[2] / 2)
      .addScaledVector(right, -pan[0]).addScaledVector(up, -pan[1]);
    const distance = 2 * (Math.hypot(...this.size()) + Math.hypot(...this.plateSize) + Math.hypot(...pan));
    const camera = this.camera;
    camera.right = canvas.width * mmPerPixel / 2;
    camera.left = -camera.right;
    camera.top = canvas.height * mmPerPixel / 2;
    camera.bottom = -camera.top;
    camera.far = 2 * distance;
    camera.position.copy(middle).addScaledVector(away, distance);
    camera.lookAt(middle);
    camera.updateProjectionMatrix();
    this.partUniforms.light.value.copy(away).addScaledVector(up, 0.7).addScaledVector(right, -0.45).normalize();
    this.partUniforms.cosine.value = Math.cos(angleDeg * Math.PI / 180);
    this.plateUniforms.mmPerPixel.value = mmPerPixel;
    this.painter.draw(this.scene, camera, canvas);
  }
}

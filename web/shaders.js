/** @param {string} body @returns {string} */
function glsl(body) {
  return body.trim() + "\n";
}

/**
 * The part. `below` holds, seen from below the plate, the depth of the first surface: an overhang that is
 * not that surface has part of the same body under it.
 */
const PART_VERTEX = glsl(`
varying vec3 vNormal;
varying vec3 vPlace;
void main() {
  vec4 world = modelMatrix * vec4(position, 1.0);
  vPlace = world.xyz;
  vNormal = mat3(modelMatrix) * normal;
  gl_Position = projectionMatrix * viewMatrix * world;
}`);

const PART_FRAGMENT = glsl(`
#include <packing>
varying vec3 vNormal;
varying vec3 vPlace;
uniform sampler2D below;
uniform mat4 belowView;
uniform float belowRange;
uniform float texel;
uniform float cosine;
uniform vec3 light;
uniform vec3 cPart, cInside, cTouch, cOverSteep, cOverFlat, cOnSteep, cOnFlat;

float heightBelow() {
  vec4 seen = belowView * vec4(vPlace, 1.0);
  float first = unpackRGBAToDepth(texture2D(below, seen.xy * 0.5 + 0.5));
  return (seen.z * 0.5 + 0.5 - first) * belowRange;
}

void main() {
  vec3 n = normalize(vNormal);
  vec3 color = cPart;
  if (n.z < -0.5 && vPlace.z < 0.2) {
    color = cTouch;
  } else if (n.z < -cosine && vPlace.z > 0.2) {
    float flatness = clamp((-n.z - cosine) / max(1.0 - cosine, 1e-4), 0.0, 1.0);
    float slope = sqrt(max(1.0 - n.z * n.z, 0.0)) / -n.z;
    bool onPart = heightBelow() > 0.1 + texel * (1.0 + 2.0 * slope);
    color = onPart ? mix(cOnSteep, cOnFlat, flatness) : mix(cOverSteep, cOverFlat, flatness);
  }
  if (!gl_FrontFacing) {
    color = mix(color, cInside, 0.8);
    n = -n;
  }
  float bright = 0.66 + 0.4 * max(dot(n, light), 0.0);
  gl_FragColor = vec4(color * bright, 1.0);
}`);

const PLATE_VERTEX = glsl(`
varying vec3 vPlace;
void main() {
  vPlace = position;
  gl_Position = projectionMatrix * modelViewMatrix * vec4(position, 1.0);
}`);

/** Lines every 1, 10 and 50 mm, the fine ones only where they stand well apart, and the part's contact. */
const PLATE_FRAGMENT = glsl(`
#include <packing>
varying vec3 vPlace;
uniform sampler2D below;
uniform mat4 belowView;
uniform float belowRange;
uniform float mmPerPixel;
uniform vec3 cPlate, cGrid, cTouch;

float lines(float pitch, float strength) {
  vec2 g = vPlace.xy / pitch;
  vec2 width = max(fwidth(g), vec2(1e-6));
  vec2 away = abs(fract(g - 0.5) - 0.5) / width;
  float near = 1.0 - min(min(away.x, away.y), 1.0);
  return near * strength * smoothstep(0.15, 0.4, 1.0 - 2.5 * mmPerPixel / pitch);
}

void main() {
  float line = max(max(lines(1.0, 0.22), lines(10.0, 0.45)), lines(50.0, 0.8));
  vec3 color = mix(cPlate, cGrid, line);
  float alpha = gl_FrontFacing ? 1.0 : 0.25 + 0.6 * line;
  vec4 seen = belowView * vec4(vPlace, 1.0);
  vec2 at = seen.xy * 0.5 + 0.5;
  if (all(greaterThan(at, vec2(0.0))) && all(lessThan(at, vec2(1.0)))) {
    float first = unpackRGBAToDepth(texture2D(below, at));
    float height = (first - seen.z * 0.5 - 0.5) * belowRange;
    if (height < 0.2) color = mix(color, cTouch, 0.7);
    else if (first < 1.0) color *= 0.9;
  }
  gl_FragColor = vec4(color, alpha);
}`);

// What lies under the pointer.

import { boundsOf, distance, gripsOf, nearest, textCorners } from './shapes.js';

/** @typedef {import('./types').Point} Point */
/** @typedef {import('./types').Entity} Entity */
/** @typedef {{id: string, entity: Entity, point: Point, segment: number, place: string | null, far: number}} Pick */

const GRIP_REACH = 9, CURVE_REACH = 7;  // pixels

/**
 * Entities near a point, the nearest first; one whose end or centre is near comes before one that only passes.
 * @param {Iterable<Entity>} entities @param {import('./view.js').View} view @param {Point} p @param {Set<string>} favoured
 * @param {number} [ease] how many times farther a coarse pointer may be away
 * @returns {Pick[]}
 */
export function picksAt(entities, view, p, favoured, ease = 1) {
  const reach = ease * GRIP_REACH / view.scale, picks = [];
  for (const entity of entities) {
    const pick = pickOf(entity, p, reach, ease * CURVE_REACH / view.scale);
    if (pick) picks.push(pick);
  }
  const rank = (/** @type {Pick} */ pick) =>
    (pick.place ? 0 : 2) + (favoured.has(pick.id) ? 0 : 1) + (pick.entity.fixed ? 4 : 0) + pick.far / reach;
  return picks.sort((a, b) => rank(a) - rank(b));
}

/** @param {Entity} entity @param {Point} p @param {number} grip @param {number} curve @returns {Pick | null} */
function pickOf(entity, p, grip, curve) {
  const endless = entity.type === 'xline' || entity.type === 'ray';
  if (!endless && !isWithin(boundsOf(entity), p, grip, gripless(entity))) return null;
  /** @type {Pick | null} */
  let best = null;
  for (const { place, point } of gripsOf(entity)) {
    const far = distance(point, p);
    if (far <= grip && (!best || far < best.far)) best = { id: entity.id, entity, point, segment: 0, place, far };
  }
  if (best) return best;
  if ((entity.type === 'text' || entity.type === 'mtext') && !isInText(entity, p)) return null;
  const { point, segment } = nearest(entity, p), far = distance(point, p);
  return far <= curve ? { id: entity.id, entity, point, segment, place: null, far } : null;
}

/**
 * Centres and control points may lie outside of the curve's box.
 * @param {Entity} e
 */
const gripless = (e) => (e.centre || e.control ? gripsOf(e).map((grip) => grip.point) : []);

/** @param {import('./shapes.js').Box} box @param {Point} p @param {number} rim @param {Point[]} extra */
function isWithin([x0, y0, x1, y1], p, rim, extra) {
  if (p[0] >= x0 - rim && p[0] <= x1 + rim && p[1] >= y0 - rim && p[1] <= y1 + rim) return true;
  return extra.some((point) => distance(point, p) <= rim);
}

/** @param {Entity} e @param {Point} p */
function isInText(e, p) {
  const [a, b, , d] = textCorners(e), along = [b[0] - a[0], b[1] - a[1]], up = [d[0] - a[0], d[1] - a[1]];
  const share = (/** @type {number[]} */ side) =>
    ((p[0] - a[0]) * side[0] + (p[1] - a[1]) * side[1]) / (side[0] * side[0] + side[1] * side[1] || 1);
  return share(along) >= 0 && share(along) <= 1 && share(up) >= -0.2 && share(up) <= 1.2;
}

/**
 * Entities in a box: drawn from left to right those that lie in it, from right to left also those that reach in.
 * @param {Iterable<Entity>} entities @param {Point} from @param {Point} to @returns {string[]}
 */
export function picksIn(entities, from, to) {
  const x0 = Math.min(from[0], to[0]), x1 = Math.max(from[0], to[0]), y0 = Math.min(from[1], to[1]), y1 = Math.max(from[1], to[1]);
  const reaches = to[0] < from[0], found = [];
  for (const e of entities) {
    if (e.fixed || e.type === 'xline' || e.type === 'ray') continue;
    const [a, b, c, d] = boundsOf(e);
    const inside = a >= x0 && c <= x1 && b >= y0 && d <= y1;
    if (inside || (reaches && reachesIn(e, [x0, y0, x1, y1]))) found.push(e.id);
  }
  return found;
}

/**
 * Sampled: a box smaller than a hundredth of a curve may miss it.
 * @param {Entity} e @param {import('./shapes.js').Box} box
 */
function reachesIn(e, [x0, y0, x1, y1]) {
  const [a, b, c, d] = boundsOf(e);
  if (a > x1 || c < x0 || b > y1 || d < y0) return false;
  for (let i = 0; i <= 10; i += 1)
    for (let j = 0; j <= 10; j += 1) {
      /** @type {Point} */
      const p = [x0 + (x1 - x0) * i / 10, y0 + (y1 - y0) * j / 10];
      const [x, y] = nearest(e, p).point;
      if (x >= x0 && x <= x1 && y >= y0 && y <= y1) return true;
    }
  return false;
}

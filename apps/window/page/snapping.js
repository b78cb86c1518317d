// What a point that is drawn falls on: ends, middles, centres, crossings, curves, or the height of the last one.

import { distance, gripsOf, meets, midway, nearest, piecesOf, placePoint, boundsOf } from './shapes.js';
import { named, placed } from './words.js';

/** @typedef {import('./types').Point} Point */
/** @typedef {import('./types').Entity} Entity */
/**
 * @typedef {{point: Point, word: string, ref?: {entity: string, place: string}, level?: 'horizontal' | 'vertical'}} Snap
 */

const REACH = 10;               // pixels
const LEVEL = Math.tan(2.5 * Math.PI / 180);  // a line is meant to be level within so many degrees

/**
 * @param {Iterable<Entity>} entities @param {import('./view.js').View} view @param {Point} p
 * @param {Point} [last] the point before it, to be level with @returns {Snap}
 */
export function snapAt(entities, view, p, last) {
  const reach = REACH / view.scale, near = [];
  for (const e of entities) if (isNear(e, p, reach)) near.push(e);
  const found = placeNear(near, p, reach) || crossingNear(near, p, reach) || curveNear(near, p, reach);
  if (found) return last ? { ...found, ...levelOf(last, found.point, 1e-9) } : found;
  return last ? levelled(view.rounded(p), last) : { point: view.rounded(p), word: '' };
}

/** @param {Entity} e @param {Point} p @param {number} reach */
function isNear(e, p, reach) {
  return isIn(e, [p[0] - reach, p[1] - reach, p[0] + reach, p[1] + reach]);
}

/**
 * Whether something of it, or its centre, may lie in a box.
 * @param {Entity} e @param {import('./shapes.js').Box} box
 */
export function isIn(e, box) {
  if (e.type === 'xline' || e.type === 'ray' || meets(boundsOf(e), box)) return true;
  return e.centre ? meets([...e.centre, ...e.centre], box) : false;
}

/** @param {Entity[]} near @param {Point} p @param {number} reach @returns {Snap | null} */
function placeNear(near, p, reach) {
  /** @type {Snap | null} */
  let best = null;
  const offer = (/** @type {Snap} */ snap) => {
    if (distance(snap.point, p) <= reach && (!best || distance(snap.point, p) < distance(best.point, p) - 1e-9)) best = snap;
  };
  for (const e of near) {
    for (const { place, point } of gripsOf(e))
      offer({ point, word: place === 'centre' ? 'centre' : place.startsWith('control') ? 'control point' : 'end', ref: { entity: e.id, place } });
    if (e.type === 'line') offer({ point: midway(/** @type {Point} */ (e.start), /** @type {Point} */ (e.end)), word: 'middle', ref: { entity: e.id, place: 'whole' } });
    if (e.type === 'arc') offer({ point: /** @type {Point} */ (placePoint(e, 'mid')), word: 'middle of the arc', ref: { entity: e.id, place: 'mid' } });
  }
  return best;
}

/**
 * Of straight lines; others are met by their nearest points.
 * @param {Entity[]} near @param {Point} p @param {number} reach @returns {Snap | null}
 */
function crossingNear(near, p, reach) {
  const lines = near.filter((e) => e.type === 'line' && distance(nearest(e, p).point, p) <= reach);
  for (let i = 0; i < lines.length; i += 1)
    for (let j = i + 1; j < lines.length; j += 1) {
      const a = piecesOf(lines[i])[0], b = piecesOf(lines[j])[0];
      const dx = a.to[0] - a.from[0], dy = a.to[1] - a.from[1], ex = b.to[0] - b.from[0], ey = b.to[1] - b.from[1];
      const turn = dx * ey - dy * ex;
      if (Math.abs(turn) < 1e-9 * Math.hypot(dx, dy) * Math.hypot(ex, ey)) continue;
      const t = ((b.from[0] - a.from[0]) * ey - (b.from[1] - a.from[1]) * ex) / turn;
      /** @type {Point} */
      const point = [a.from[0] + t * dx, a.from[1] + t * dy];
      if (distance(point, p) <= reach) return { point, word: 'on', ref: { entity: lines[i].id, place: 'whole' } };
    }
  return null;
}

/** @param {Entity[]} near @param {Point} p @param {number} reach @returns {Snap | null} */
function curveNear(near, p, reach) {
  /** @type {Snap | null} */
  let best = null;
  for (const e of near) {
    if (['point', 'text', 'mtext'].includes(e.type)) continue;
    const { point, segment } = nearest(e, p), place = e.type === 'polyline' ? `segment:${segment}` : 'whole';
    if (distance(point, p) <= reach && (!best || distance(point, p) < distance(best.point, p))) best = { point, word: 'on', ref: { entity: e.id, place } };
  }
  return best;
}

/** @param {Point} last @param {Point} p @param {number} slack @returns {{level?: 'horizontal' | 'vertical'}} */
function levelOf(last, p, slack) {
  const dx = Math.abs(p[0] - last[0]), dy = Math.abs(p[1] - last[1]);
  if (dy <= slack * dx) return { level: 'horizontal' };
  return dx <= slack * dy ? { level: 'vertical' } : {};
}

/** @param {Point} p @param {Point} last @returns {Snap} */
function levelled(p, last) {
  const { level } = levelOf(last, p, LEVEL);
  if (level === 'horizontal') return { point: [p[0], last[1]], word: 'horizontal', level };
  if (level === 'vertical') return { point: [last[0], p[1]], word: 'vertical', level };
  return { point: p, word: '' };
}

/**
 * The constraint that a snap stands for.
 * @param {string} name @param {string} place what is snapped @param {Snap} snap @returns {string[]}
 */
export function tieOf(name, place, snap) {
  if (!snap.ref) return [];
  const own = placed(name, place), other = placed(snap.ref.entity, snap.ref.place);
  if (snap.word === 'on') return [`constrain point_on_curve ${own} ${other}`];
  if (snap.word === 'middle') return [`constrain midpoint ${own} ${named(snap.ref.entity)}`];
  return [`constrain coincident ${own} ${other}`];
}

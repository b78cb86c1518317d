// Which way an entity can still move, as arrows on the screen.

import { boundsOf, distance, gripsOf, midway, placePoint, tangentAt } from './shapes.js';

/** @typedef {import('./types').Point} Point */
/** @typedef {import('./types').Entity} Entity */
/** @typedef {import('./types').Motion} Motion */

/**
 * How an entity can move; one that is free in every way can slide along both axes.
 * @param {{free: boolean, motions: Motion[]} | undefined} told @returns {Motion[]}
 */
export function motionsOf(told) {
  if (!told) return [];
  if (told.motions.length || !told.free) return told.motions;
  return [{ kind: 'slide', direction: [1, 0] }, { kind: 'slide', direction: [0, 1] }];
}

/**
 * Away from the curve, at one of its ends.
 * @param {Entity} e @param {string} end @returns {Point}
 */
export function outwardAt(e, end) {
  const [x, y] = tangentAt(e, end);
  const other = placePoint(e, end === 'start' ? 'end' : 'start'), at = placePoint(e, end);
  const along = at && other ? (at[0] - other[0]) * x + (at[1] - other[1]) * y : 1;
  const sign = e.type === 'line' ? (along < 0 ? -1 : 1) : end === 'start' ? -1 : 1;
  return [sign * x, sign * y];
}

/**
 * @param {CanvasRenderingContext2D} c @param {import('./view.js').View} view @param {Entity} e @param {Motion[]} motions
 */
export function paintArrows(c, view, e, motions) {
  const [x0, y0, x1, y1] = boundsOf(e), middle = view.toScreen(e.type === 'xline' || e.type === 'ray' ? [x0, y0] : midway([x0, y0], [x1, y1]));
  for (const motion of motions.slice(0, 4)) {
    if (motion.kind === 'slide' && motion.direction) doubleArrow(c, ...middle, motion.direction[0], -motion.direction[1]);
    else if (motion.kind === 'turn' && motion.centre) turnArrow(c, ...view.toScreen(motion.centre));
    else if (motion.kind === 'radius') radiusArrows(c, view, e);
    else if (motion.kind === 'length') lengthArrow(c, view, e, motion.end || 'end');
    else if (motion.kind === 'other') for (const { point } of gripsOf(e).slice(0, 40)) cross(c, ...view.toScreen(point));
  }
}

/** @param {CanvasRenderingContext2D} c @param {import('./view.js').View} view @param {Entity} e */
function radiusArrows(c, view, e) {
  if (!e.centre || !e.radius) return;
  const oblique = Math.SQRT1_2 * e.radius;  // between the arrows of a circle that can slide
  /** @type {Point} */
  const on = [e.centre[0] + oblique, e.centre[1] + oblique];
  const at = e.type === 'circle' ? on : placePoint(e, 'whole') || on;
  const away = distance(e.centre, at) || 1;
  doubleArrow(c, ...view.toScreen(at), (at[0] - e.centre[0]) / away, -(at[1] - e.centre[1]) / away, 4, 18);
}

/** @param {CanvasRenderingContext2D} c @param {import('./view.js').View} view @param {Entity} e @param {string} end */
function lengthArrow(c, view, e, end) {
  const at = placePoint(e, end), [dx, dy] = outwardAt(e, end);
  if (at) doubleArrow(c, ...view.toScreen(at), dx, -dy, 6, 22);
}

/**
 * @param {CanvasRenderingContext2D} c @param {number} x @param {number} y @param {number} dx @param {number} dy
 * @param {number} [from] @param {number} [to] pixels from the middle
 */
function doubleArrow(c, x, y, dx, dy, from = 12, to = 34) {
  for (const sign of [1, -1]) {
    c.beginPath();
    c.moveTo(x + sign * dx * from, y + sign * dy * from);
    c.lineTo(x + sign * dx * to, y + sign * dy * to);
    c.stroke();
    head(c, x + sign * dx * to, y + sign * dy * to, sign * dx, sign * dy);
  }
}

/** @param {CanvasRenderingContext2D} c @param {number} x @param {number} y */
function turnArrow(c, x, y) {
  c.beginPath();
  c.arc(x, y, 16, -2.4, 0.6);
  c.stroke();
  head(c, x + 16 * Math.cos(0.6), y + 16 * Math.sin(0.6), -Math.sin(0.6), Math.cos(0.6));
  head(c, x + 16 * Math.cos(-2.4), y + 16 * Math.sin(-2.4), Math.sin(-2.4), -Math.cos(-2.4));
}

/** @param {CanvasRenderingContext2D} c @param {number} x @param {number} y */
function cross(c, x, y) {
  c.beginPath();
  for (const [dx, dy] of [[1, 0], [0, 1]]) {
    c.moveTo(x - 11 * dx, y - 11 * dy);
    c.lineTo(x + 11 * dx, y + 11 * dy);
  }
  c.stroke();
}

/** @param {CanvasRenderingContext2D} c @param {number} x @param {number} y @param {number} dx @param {number} dy */
function head(c, x, y, dx, dy) {
  c.beginPath();
  c.moveTo(x + 8 * dx, y + 8 * dy);
  c.lineTo(x - 4.5 * dy, y + 4.5 * dx);
  c.lineTo(x + 4.5 * dy, y - 4.5 * dx);
  c.fill();
}

// What is drawn by clicks: its edit, how it looks while it is drawn, and what ties it to what the clicks fell on.

import { distance } from './shapes.js';
import { tieOf } from './snapping.js';
import { named, written } from './words.js';

/** @typedef {import('./types').Point} Point */
/** @typedef {import('./types').Entity} Entity */
/** @typedef {import('./snapping.js').Snap} Snap */
/**
 * @typedef {{
 *   name: string, clicks: number, levels?: boolean, goesOn?: boolean,
 *   text: (points: Point[]) => string, shape: (points: Point[]) => Entity[], ties: (name: string, snaps: Snap[]) => string[],
 * }} Figure
 */

/** @param {string} name @param {Snap} snap @returns {string[]} */
const level = (name, snap) => (snap.level ? [`constrain ${snap.level} ${named(name)}`] : []);

/** @type {(point: Point) => Entity} */
const dotAt = (position) => ({ id: '', type: 'point', position });

/** @type {Record<string, Figure>} */
export const FIGURES = {
  line: {
    name: 'line', clicks: 2, levels: true, goesOn: true,
    text: ([a, b]) => `draw line ${written(a)} ${written(b)}`,
    shape: ([start, end]) => (end ? [{ id: '', type: 'line', start, end }] : []),
    ties: (name, [a, b]) => [...tieOf(name, 'start', a), ...tieOf(name, 'end', b), ...level(name, b)],
  },
  circle: {
    name: 'circle', clicks: 2,
    text: ([c, p]) => `draw circle ${written(c)} radius ${Number(distance(c, p).toPrecision(6))}`,
    shape: ([centre, p]) => (p ? [{ id: '', type: 'circle', centre, radius: distance(centre, p) }] : []),
    ties: (name, [c]) => tieOf(name, 'centre', c),
  },
  arc: {
    name: 'arc', clicks: 3,
    text: ([c, a, b]) => `draw arc centre ${written(c)} from ${written(a)} to ${written(b)}`,
    shape: ([centre, a, b]) => {
      if (!a) return [];
      if (!b) return [{ id: '', type: 'line', start: centre, end: a }];
      const angle = (/** @type {Point} */ p) => Math.atan2(p[1] - centre[1], p[0] - centre[0]);
      const start = angle(a), end = angle(b);
      return [{ id: '', type: 'arc', centre, radius: distance(centre, a), start_angle: start, end_angle: end > start ? end : end + 2 * Math.PI }];
    },
    ties: (name, [c, a]) => [...tieOf(name, 'centre', c), ...tieOf(name, 'start', a)],
  },
  polyline: {
    name: 'polyline', clicks: Infinity, levels: true,
    text: (points) => {
      const isClosed = points.length > 3 && distance(points[0], points[points.length - 1]) === 0;
      return `draw polyline ${(isClosed ? points.slice(0, -1) : points).map(written).join(' ')}${isClosed ? ' closed' : ''}`;
    },
    shape: (points) => (points.length > 1 ? [{ id: '', type: 'polyline', vertices: points, bulges: points.map(() => 0), closed: false }] : []),
    ties: () => [],
  },
  point: {
    name: 'point', clicks: 1,
    text: ([p]) => `draw point ${written(p)}`,
    shape: ([p]) => (p ? [dotAt(p)] : []),
    ties: (name, [p]) => tieOf(name, 'whole', p),
  },
};

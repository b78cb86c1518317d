// Curves that are joined end to end.

import { distance, piecesOf, runOf } from './shapes.js';

/** @typedef {import('./types').Entity} Entity */
/** @typedef {import('./types').Point} Point */

const SLACK = 1e-6;  // of the drawing's size: ends that are closer are one point

/**
 * The two ends of a curve; none of one that has no end.
 * @param {Entity} e @returns {Point[]}
 */
export function endsOf(e) {
  if (e.fixed) return [];
  if (e.type === 'spline' || e.type === 'elliptical_arc') {
    const run = runOf(e);
    return e.periodic || !run.length ? [] : [run[0], run[run.length - 1]];
  }
  if (e.type === 'circle' || (e.type === 'polyline' && e.closed)) return [];
  const pieces = piecesOf(e);
  return pieces.length ? [pieces[0].from, pieces[pieces.length - 1].to] : [];
}

/** Ends by where they are. */
class Ends {
  /** @param {import('./drawing.js').Drawing} drawing */
  constructor(drawing) {
    const box = drawing.box() || [0, 0, 1, 1];
    this.slack = SLACK * (Math.hypot(box[2] - box[0], box[3] - box[1]) || 1);
    /** @type {Map<string, {id: string, end: Point}[]>} */
    this.cells = new Map();
    for (const e of drawing.entities.values()) for (const end of endsOf(e)) this.#add(e.id, end);
  }

  /** @param {string} id @param {Point} end */
  #add(id, end) {
    const [i, j] = this.#cell(end), key = `${i} ${j}`;
    this.cells.set(key, [...(this.cells.get(key) || []), { id, end }]);
  }

  /** @param {Point} p */
  #cell(p) {
    return p.map((value) => Math.floor(value / this.slack));
  }

  /** @param {Point} p @returns {string[]} */
  at(p) {
    const [i, j] = this.#cell(p), found = [];
    for (let di = -1; di <= 1; di += 1)
      for (let dj = -1; dj <= 1; dj += 1)
        for (const { id, end } of this.cells.get(`${i + di} ${j + dj}`) || []) if (distance(end, p) <= this.slack) found.push(id);
    return found;
  }
}

/**
 * A curve and all that can be reached from it over common ends. Cost: one pass over the drawing.
 * @param {import('./drawing.js').Drawing} drawing @param {string[]} ids @returns {string[]}
 */
export function chainOf(drawing, ids) {
  const ends = new Ends(drawing), chain = new Set(ids), open = [...ids];
  while (open.length) {
    const e = drawing.entities.get(/** @type {string} */ (open.pop()));
    for (const end of e ? endsOf(e) : [])
      for (const id of ends.at(end)) {
        if (chain.has(id)) continue;
        chain.add(id);
        open.push(id);
      }
  }
  return [...chain];
}

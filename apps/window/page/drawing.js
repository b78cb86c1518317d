// The drawing as the page knows it, kept up with the server's by changes.

import { boundsOf } from './shapes.js';

/** @typedef {import('./types').Entity} Entity */
/** @typedef {import('./types').Constraint} Constraint */
/** @typedef {import('./types').Change} Change */

const TIES = new Set(['coincident', 'point_on_curve', 'midpoint', 'concentric']);

export class Drawing {
  constructor() {
    /** @type {Map<string, Entity>} */
    this.entities = new Map();
    /** @type {Map<string, Constraint>} */
    this.constraints = new Map();
    /** @type {import('./types').Parameter[]} */
    this.parameters = [];
    this.unit = 'mm';
    /** @type {Map<string, Set<string>>} ids of constraints by entity */
    this.on = new Map();
  }

  /** @param {import('./types').DrawingData} data */
  static of(data) {
    const drawing = new Drawing();
    drawing.unit = data.unit;
    drawing.apply({ ...data, erased: [], deleted: [] });
    return drawing;
  }

  /** @param {Change} change */
  apply(change) {
    for (const id of change.deleted) this.#untie(id);
    for (const id of change.erased) this.entities.delete(id);
    for (const entity of change.entities) this.entities.set(entity.id, entity);
    for (const constraint of change.constraints) {
      this.#untie(constraint.id);
      this.constraints.set(constraint.id, constraint);
      for (const { entity } of constraint.refs) {
        const ids = this.on.get(entity) || new Set();
        this.on.set(entity, ids.add(constraint.id));
      }
    }
    if (change.parameters) this.parameters = change.parameters;
  }

  /** @param {string} id */
  #untie(id) {
    for (const { entity } of this.constraints.get(id)?.refs || []) this.on.get(entity)?.delete(id);
    this.constraints.delete(id);
  }

  /**
   * The constraints on an entity.
   * @param {string} entity @returns {string[]}
   */
  constraintsOn(entity) {
    return [...(this.on.get(entity) || [])];
  }

  /**
   * The entities on which a place lies by a constraint, also by way of other points that coincide with it.
   * @param {string} entity @param {string} place @returns {Set<string>}
   */
  tiedTo(entity, place) {
    const key = (/** @type {import('./types').Ref} */ ref) => `${ref.entity}\n${ref.point}`;
    /** @type {import('./types').Ref[]} */
    const open = [{ entity, point: place }];
    const places = new Set(open.map(key)), tied = new Set([entity]);
    for (let ref = open.pop(); ref; ref = open.pop())
      for (const id of this.on.get(ref.entity) || []) {
        const c = this.constraints.get(id), own = key(ref);
        if (!c || !TIES.has(c.type) || !c.refs.some((each) => key(each) === own)) continue;
        for (const each of c.refs) {
          tied.add(each.entity);
          if (c.type !== 'coincident' || places.has(key(each))) continue;
          places.add(key(each));
          open.push(each);
        }
      }
    return tied;
  }

  /**
   * The box around all of it; null for an empty drawing.
   * @returns {import('./shapes.js').Box | null}
   */
  box() {
    /** @type {import('./shapes.js').Box} */
    const box = [Infinity, Infinity, -Infinity, -Infinity];
    for (const entity of this.entities.values()) {
      if (entity.fixed && (entity.type === 'xline' || entity.type === 'point')) continue;
      const [x0, y0, x1, y1] = boundsOf(entity);
      box[0] = Math.min(box[0], x0);
      box[1] = Math.min(box[1], y0);
      box[2] = Math.max(box[2], x1);
      box[3] = Math.max(box[3], y1);
    }
    return box[0] <= box[2] ? box : null;
  }
}

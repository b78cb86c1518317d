// A drawing that can be led to any state between edits.

import { Drawing } from './drawing.js';

/** @typedef {import('./types').Change} Change */

/**
 * The change that takes another one back, from the drawing that it is to be made in.
 * @param {Drawing} drawing @param {Change} change @returns {Change}
 */
function reversed(drawing, change) {
  const { entities, constraints } = drawing;
  const was = (/** @type {Map<string, any>} */ items, /** @type {string[]} */ ids) => ids.flatMap((id) => items.get(id) ?? []);
  const isNew = (/** @type {Map<string, any>} */ items) => (/** @type {string} */ id) => !items.has(id);
  const drawn = change.entities.map((each) => each.id), tied = change.constraints.map((each) => each.id);
  return {
    entities: was(entities, [...drawn, ...change.erased]), erased: drawn.filter(isNew(entities)),
    constraints: was(constraints, [...tied, ...change.deleted]), deleted: tied.filter(isNew(constraints)),
    parameters: change.parameters && drawing.parameters,
  };
}

export class Replay {
  /** @param {import('./types').DrawingData} data @param {(Change | undefined)[]} changes one for each edit; refused ones have none */
  constructor(data, changes) {
    this.drawing = Drawing.of(data);
    this.changes = changes;
    this.state = 0;  // how many of the edits are done
    /** @type {(Change | undefined)[]} */
    this.back = [];
  }

  /**
   * The entities that have changed on the way.
   * @param {number} state @returns {Set<string>}
   */
  goTo(state) {
    /** @type {Set<string>} */
    const touched = new Set();
    while (this.state < state) {
      const change = this.changes[this.state];
      this.back[this.state] = change && reversed(this.drawing, change);
      this.#make(change, touched);
      this.state += 1;
    }
    while (this.state > state) {
      this.state -= 1;
      this.#make(this.back[this.state], touched);
    }
    return touched;
  }

  /** @param {Change | undefined} change @param {Set<string>} touched */
  #make(change, touched) {
    if (!change) return;
    this.drawing.apply(change);
    for (const { id } of change.entities) touched.add(id);
    for (const id of change.erased) touched.add(id);
  }
}

// Fingers on a picture: what lies between two of them stays between them.

/** @typedef {import('./types').Point} Point */

export class Fingers {
  constructor() {
    /** @type {Map<number, Point>} by the pointer that each of them is */
    this.places = new Map();
  }

  get count() { return this.places.size; }

  /** @param {number} id @param {Point} at on the screen */
  put(id, at) {
    this.places.set(id, at);
  }

  /** @param {number} id */
  lift(id) {
    this.places.delete(id);
  }

  /**
   * One of two has moved: the view follows both.
   * @param {number} id @param {Point} at on the screen @param {import('./view.js').View} view
   */
  spread(id, at, view) {
    if (this.count !== 2 || !this.places.has(id)) return false;
    const [before, widthBefore] = this.#middle();
    this.places.set(id, at);
    const [after, width] = this.#middle();
    view.pan(after[0] - before[0], after[1] - before[1]);
    if (widthBefore > 0) view.zoom(...after, width / widthBefore);
    return true;
  }

  /** @returns {[Point, number]} and how far they are apart */
  #middle() {
    const [a, b] = this.places.values();
    return [[(a[0] + b[0]) / 2, (a[1] + b[1]) / 2], Math.hypot(a[0] - b[0], a[1] - b[1])];
  }
}

// Which part of the drawing the screen shows.

/** @typedef {import('./types').Point} Point */

const FARTHEST = 1e-9, NEAREST = 1e9;  // pixels for a drawing unit: beyond it numbers of the screen lose their digits
const RIM = 56;                        // pixels round a drawing that is shown whole, for its signs

export class View {
  constructor() {
    this.scale = 1;
    this.x = 0;  // the drawing's point in the middle of the screen
    this.y = 0;
    this.width = 1;
    this.height = 1;
  }

  /** @param {Point} p @returns {Point} */
  toScreen = (p) => [this.width / 2 + (p[0] - this.x) * this.scale, this.height / 2 - (p[1] - this.y) * this.scale];

  /** @param {number} x @param {number} y @returns {Point} */
  toDrawing(x, y) {
    return [this.x + (x - this.width / 2) / this.scale, this.y - (y - this.height / 2) / this.scale];
  }

  /**
   * What is on the screen, of the drawing.
   * @param {number} rim pixels more on every side @returns {import('./shapes.js').Box}
   */
  seen(rim) {
    const [x0, y0] = this.toDrawing(-rim, this.height + rim), [x1, y1] = this.toDrawing(this.width + rim, -rim);
    return [x0, y0, x1, y1];
  }

  /** @param {number} dx @param {number} dy in pixels */
  pan(dx, dy) {
    this.x -= dx / this.scale;
    this.y += dy / this.scale;
  }

  /**
   * What lies under a point of the screen stays there.
   * @param {number} x @param {number} y @param {number} factor
   */
  zoom(x, y, factor) {
    const [px, py] = this.toDrawing(x, y);
    this.scale = Math.min(NEAREST, Math.max(FARTHEST, this.scale * factor));
    this.x = px - (x - this.width / 2) / this.scale;
    this.y = py + (y - this.height / 2) / this.scale;
  }

  /** @param {import('./shapes.js').Box | null} box */
  fit(box) {
    if (!box) return;
    const [x0, y0, x1, y1] = box, w = x1 - x0, h = y1 - y0;
    const room = (/** @type {number} */ size) => Math.max(40, size - 2 * RIM);
    this.x = (x0 + x1) / 2;
    this.y = (y0 + y1) / 2;
    const scale = Math.min(w > 0 ? room(this.width) / w : Infinity, h > 0 ? room(this.height) / h : Infinity);
    this.scale = Number.isFinite(scale) ? scale : 10;
  }

  /**
   * A step of the drawing that a pixel can show: 1, 0.1, 0.01 ...
   * @returns {number}
   */
  step() {
    return 10 ** Math.floor(Math.log10(1.5 / this.scale));
  }

  /**
   * A point with no more digits than the screen shows.
   * @param {Point} p @returns {Point}
   */
  rounded(p) {
    const step = this.step(), digits = Math.max(0, Math.min(12, -Math.round(Math.log10(step))));
    return [Number((Math.round(p[0] / step) * step).toFixed(digits)), Number((Math.round(p[1] / step) * step).toFixed(digits))];
  }
}

// Strokes and dots of one colour and width, in units of the drawing or of the screen.

import { boundsOf, meets, textCorners, trace } from './shapes.js';

/** @typedef {import('./types').Entity} Entity */
/** @typedef {import('./types').Point} Point */

/** @param {string} name */
const colour = (name) => getComputedStyle(document.documentElement).getPropertyValue(`--${name}`).trim();
const NAMES = ['ink', 'soft', 'faint', 'card', 'free', 'defined', 'clash', 'fixed', 'mark', 'edited', 'followed',
  'added', 'added-back', 'added-bar', 'deleted', 'deleted-back', 'deleted-bar', 'pointed', 'pointed-back',
  'pointed-bar', 'dim', 'plate-rim', 'lead', 'kept'];

export class Pens {
  /** @param {import('./view.js').View} view */
  constructor(view) {
    this.view = view;
    /** @type {Record<string, string>} */
    this.colours = {};
    this.readColours();
    /** @type {Point} */
    this.origin = [0, 0];  // what strokes in units of the drawing are seen from
    this.ratio = 1;        // pixels of the screen in one of the page
  }

  readColours() {
    for (const name of NAMES) this.colours[name] = colour(name);
  }

  far() {
    const { width, height, scale } = this.view;
    return 4 * (width + height) / scale + 1e3 / scale;
  }

  /** @param {CanvasRenderingContext2D} c */
  clear(c) {
    c.setTransform(this.ratio, 0, 0, this.ratio, 0, 0);
    c.clearRect(0, 0, this.view.width, this.view.height);
    c.lineCap = 'round';
    c.lineJoin = 'round';
  }

  /**
   * Units of the drawing from here on, seen from the origin.
   * @param {CanvasRenderingContext2D} c
   */
  inDrawing(c) {
    const { scale, width, height, x, y } = this.view, k = this.ratio * scale;
    c.setTransform(k, 0, 0, -k, this.ratio * (width / 2 + (this.origin[0] - x) * scale),
                   this.ratio * (height / 2 - (this.origin[1] - y) * scale));
  }

  /** @param {CanvasRenderingContext2D} c @param {string} style */
  pen(c, style) {
    const [state, kind] = style.split(' '), px = 1 / this.view.scale;
    c.strokeStyle = this.colours[state];
    c.lineWidth = (kind === 'plain' ? (state === 'fixed' ? 1 : 1.7) : kind === 'construction' ? 1 : 0.8) * px;
    c.setLineDash(kind === 'plain' ? [] : kind === 'construction' ? [6 * px, 3.5 * px] : [12 * px, 3 * px, 2 * px, 3 * px]);
    c.lineCap = kind === 'plain' ? 'round' : 'butt';
  }

  /** @param {CanvasRenderingContext2D} c @param {Entity} e @param {string} style */
  stroke(c, e, style) {
    this.inDrawing(c);
    this.pen(c, style);
    const path = new Path2D();
    trace(path, e, this.origin, this.far() + Math.hypot(...boundsMiddle(e, this.view)));
    c.stroke(path);
  }

  /** @param {CanvasRenderingContext2D} c @param {Point} p @param {string} ink @param {number} size in pixels */
  dot(c, p, ink, size) {
    c.setTransform(this.ratio, 0, 0, this.ratio, 0, 0);
    const [x, y] = this.view.toScreen(p);
    c.fillStyle = ink;
    c.beginPath();
    c.arc(x, y, size, 0, 7);
    c.fill();
  }

  /** @param {CanvasRenderingContext2D} c @param {Entity} e @param {string} ink */
  text(c, e, ink) {
    const [x, y] = this.view.toScreen(/** @type {Point} */ (e.position)), size = (e.height || 1) * this.view.scale;
    if (size < 2) return;
    c.setTransform(this.ratio, 0, 0, this.ratio, 0, 0);
    c.translate(x, y);
    c.rotate(-(e.rotation || 0));
    c.fillStyle = ink;
    c.font = `${size / 0.72}px ui-sans-serif, system-ui, "Liberation Sans", sans-serif`;  // capitals are as high as the text
    c.textAlign = 'left';
    c.textBaseline = 'alphabetic';
    (e.text || '').split('\n').forEach((line, i) => c.fillText(line, 0, i * size * 1.6));
  }

  /**
   * Faint lines to judge sizes by, of 1, 2 or 5 units times a power of ten.
   * @param {CanvasRenderingContext2D} c
   */
  grid(c) {
    const { view } = this, wanted = 70 / view.scale, power = 10 ** Math.floor(Math.log10(wanted));
    const step = power * ([1, 2, 5, 10].find((f) => f * power >= wanted) || 10);
    const [x0, y1] = view.toDrawing(0, 0), [x1, y0] = view.toDrawing(view.width, view.height);
    c.strokeStyle = this.colours.faint;
    c.lineWidth = 1;
    c.setLineDash([]);
    c.globalAlpha = 0.55;
    c.beginPath();
    for (let x = Math.ceil(x0 / step); x * step <= x1; x += 1) {
      const px = Math.round(view.toScreen([x * step, 0])[0]) + 0.5;
      c.moveTo(px, 0);
      c.lineTo(px, view.height);
    }
    for (let y = Math.ceil(y0 / step); y * step <= y1; y += 1) {
      const py = Math.round(view.toScreen([0, y * step])[1]) + 0.5;
      c.moveTo(0, py);
      c.lineTo(view.width, py);
    }
    c.stroke();
    c.globalAlpha = 1;
  }

  /** @param {CanvasRenderingContext2D} c @param {Entity | undefined} e @param {string} ink @param {number} width @param {number} alpha */
  bright(c, e, ink, width, alpha) {
    if (!e) return;
    c.globalAlpha = alpha;
    if (e.type === 'point') this.dot(c, /** @type {Point} */ (e.position), ink, 3 + width / 2);
    else if (e.type === 'text' || e.type === 'mtext') {
      c.setTransform(this.ratio, 0, 0, this.ratio, 0, 0);
      c.strokeStyle = ink;
      c.lineWidth = 1.5;
      c.beginPath();
      textCorners(e).forEach((p) => c.lineTo(...this.view.toScreen(p)));
      c.closePath();
      c.stroke();
    } else {
      this.inDrawing(c);
      c.strokeStyle = ink;
      c.lineWidth = width / this.view.scale;
      c.lineCap = 'round';
      c.setLineDash([]);
      const path = new Path2D();
      trace(path, e, this.origin, this.far() + Math.hypot(...boundsMiddle(e, this.view)));
      c.stroke(path);
    }
    c.globalAlpha = 1;
  }

  /** @param {CanvasRenderingContext2D} c @param {Entity} e */
  erased(c, e) {
    if (e.type === 'point' || e.type === 'text' || e.type === 'mtext') return this.bright(c, e, this.colours.deleted, 2, 0.6);
    this.inDrawing(c);
    const px = 1 / this.view.scale, path = new Path2D();
    c.strokeStyle = this.colours.deleted;
    c.lineWidth = 2 * px;
    c.setLineDash([2 * px, 4 * px]);
    trace(path, e, this.origin, this.far());
    c.stroke(path);
    c.setLineDash([]);
  }

  /** @param {CanvasRenderingContext2D} c @param {Entity} e */
  ghost(c, e) {
    if (e.type === 'point' || e.type === 'text' || e.type === 'mtext') return;
    this.inDrawing(c);
    const px = 1 / this.view.scale, path = new Path2D();
    c.strokeStyle = this.colours.fixed;
    c.lineWidth = px;
    c.setLineDash([1.5 * px, 3 * px]);
    trace(path, e, this.origin, this.far());
    c.stroke(path);
    c.setLineDash([]);
  }

  /**
   * Whether anything of an entity can be seen.
   * @param {Entity} e @param {import('./shapes.js').Box} seen what is on the screen, of the drawing
   */
  isSeen(e, seen) {
    return e.type === 'xline' || e.type === 'ray' || meets(boundsOf(e), seen);
  }

  /**
   * Many alike in one stroke.
   * @param {CanvasRenderingContext2D} c @param {Entity[]} entities @param {string} ink @param {number} width @param {number[]} dashes in pixels
   */
  strokeAll(c, entities, ink, width, dashes) {
    const px = 1 / this.view.scale, path = new Path2D(), far = this.far();
    for (const e of entities)
      if (e.type !== 'point' && e.type !== 'text' && e.type !== 'mtext') trace(path, e, this.origin, far + Math.hypot(...boundsMiddle(e, this.view)));
    this.inDrawing(c);
    c.strokeStyle = ink;
    c.lineWidth = width * px;
    c.lineCap = 'round';
    c.setLineDash(dashes.map((dash) => dash * px));
    c.stroke(path);
    c.setLineDash([]);
  }

  /** @param {CanvasRenderingContext2D} c @param {Entity[]} entities */
  ghosts(c, entities) {
    this.strokeAll(c, entities, this.colours.fixed, 1, [1.5, 3]);
  }

  /** @param {CanvasRenderingContext2D} c @param {Entity[]} entities @param {string} ink @param {number} width */
  brights(c, entities, ink, width) {
    this.strokeAll(c, entities, ink, width, []);
    for (const e of entities) if (e.type === 'point' || e.type === 'text' || e.type === 'mtext') this.bright(c, e, ink, width, 1);
  }

  /** @param {CanvasRenderingContext2D} c @param {{from: Point, to: Point}} box */
  box(c, { from, to }) {
    const [x0, y0] = this.view.toScreen(from), [x1, y1] = this.view.toScreen(to);
    c.strokeStyle = c.fillStyle = this.colours.mark;
    c.lineWidth = 1;
    c.setLineDash(x1 < x0 ? [4, 3] : []);
    c.strokeRect(x0, y0, x1 - x0, y1 - y0);
    c.globalAlpha = 0.08;
    c.fillRect(x0, y0, x1 - x0, y1 - y0);
    c.globalAlpha = 1;
    c.setLineDash([]);
  }

  /** @param {CanvasRenderingContext2D} c @param {{point: Point, word: string}} snap */
  snap(c, { point, word }) {
    const [x, y] = this.view.toScreen(point);
    c.strokeStyle = c.fillStyle = this.colours.added;
    c.lineWidth = 2;
    c.strokeRect(x - 5, y - 5, 10, 10);
    c.font = '600 11px ui-sans-serif, system-ui, "Liberation Sans", sans-serif';
    c.textAlign = 'left';
    c.textBaseline = 'middle';
    const width = c.measureText(word).width, left = Math.min(x + 9, this.view.width - width - 8);
    c.fillStyle = this.colours.card;
    c.globalAlpha = 0.85;
    c.fillRect(left - 3, y - 21, width + 6, 15);
    c.globalAlpha = 1;
    c.fillStyle = this.colours.added;
    c.fillText(word, left, y - 13);
  }
}

/**
 * How far from the middle of the screen an endless line's point is.
 * @param {Entity} e @param {import('./view.js').View} view @returns {Point}
 */
function boundsMiddle(e, view) {
  const p = e.point || [view.x, view.y];
  return [p[0] - view.x, p[1] - view.y];
}

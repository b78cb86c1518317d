// The screen: the drawing on it, when it is painted, and what the page says beside it.

import { Drawing } from './drawing.js';
import { Gone } from './link.js';
import { Painter } from './painter.js';
import { View } from './view.js';
import { byId } from './words.js';

/** @typedef {import('./types').Point} Point */

const SHARP_DELAY = 150;       // milliseconds without a pan until a large drawing is drawn anew

export class Screen {
  /** @param {Map<string, import('./types').Kind>} kinds @param {HTMLCanvasElement} above */
  constructor(kinds, above) {
    this.kinds = kinds;
    this.view = new View();
    this.drawing = new Drawing();
    this.paintsAll = false;
    this.isPainting = false;
    this.hasPainted = false;  // since the last frame
    /** @type {import('./painter.js').Scene} */
    this.scene = {
      freedom: null, hot: new Set(), hotMarks: new Set(), selected: new Set(), trial: null, fates: new Map(), gone: new Map(),
      goneEntities: new Map(), names: false, marks: true, rubber: null, sketch: [], snap: null, box: null, cut: new Set(), wiggle: [],
      pinned: { marks: new Set(), entities: new Set() },
    };
    this.painter = new Painter(/** @type {HTMLCanvasElement} */ (byId('drawing')), above, this.view, this.kinds);
  }

  /** @param {string} text */
  say(text, isBad = false) {
    const said = byId('said');
    if (said.textContent !== text) said.textContent = text;
    said.classList.toggle('bad', isBad);
  }

  /** @param {string} text empty: none @param {Point} [at] on the screen */
  tip(text, at, isBad = false) {
    const tip = byId('tip');
    tip.hidden = !text;
    if (!text || !at) return;
    tip.textContent = text;
    tip.classList.toggle('bad', isBad);
    tip.style.left = `${Math.min(at[0] + 16, this.view.width - tip.offsetWidth - 8)}px`;
    tip.style.top = `${at[1] + 22 + tip.offsetHeight > this.view.height ? at[1] - tip.offsetHeight - 14 : at[1] + 20}px`;
  }

  /** @param {unknown} failure */
  complain(failure) {
    const text = failure instanceof Error ? failure.message : String(failure);
    if (failure instanceof Gone) this.showGone(true);
    this.say(text, true);
  }

  /** @param {boolean} isGone */
  showGone(isGone) {
    const notice = byId('notice');
    if (!isGone) {
      if (notice.classList.contains('bad')) notice.hidden = true;
      return;
    }
    notice.className = 'bad';
    notice.textContent = 'The program that shows this drawing cannot be reached. What was done until now is kept beside the drawing; '
      + 'open it again in the terminal.';
    notice.hidden = false;
  }

  /** @param {boolean} all not only what follows the pointer */
  paintSoon(all) {
    this.paintsAll = this.paintsAll || all;
    if (this.isPainting) return;
    this.isPainting = true;
    requestAnimationFrame(() => {
      this.isPainting = false;
      this.#paint();
    });
  }

  #paint() {
    if (this.paintsAll) this.painter.paintBelow(this.drawing, this.scene);
    this.paintsAll = false;
    this.painter.paintAbove(this.drawing, this.scene);
    document.body.dataset.painted = String(Number(document.body.dataset.painted || 0) + 1);
  }

  /** All, so that the next frame shows it and need not wait for it to be painted; but once for each frame. */
  paintNow() {
    if (this.hasPainted) return this.paintSoon(true);
    this.hasPainted = true;
    requestAnimationFrame(() => { this.hasPainted = false; });
    this.paintsAll = true;
    this.#paint();
  }

  /** The view is another one. */
  moved() {
    this.tip('');
    if (!this.painter.shift()) return this.paintSoon(true);
    clearTimeout(this.sharpTimer);
    this.sharpTimer = setTimeout(() => this.paintSoon(true), SHARP_DELAY);
    this.paintSoon(false);
  }

  watchSize() {
    const stage = byId('stage');
    let isFirst = true;
    new ResizeObserver(() => {
      this.painter.resize(stage.clientWidth, stage.clientHeight);
      if (isFirst) this.view.fit(this.drawing.box());
      isFirst = false;
      this.paintSoon(true);
    }).observe(stage);
    matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => {
      this.painter.readColours();
      this.paintSoon(true);
    });
  }

  /**
   * @param {() => void} what is to be done when all is drawn
   */
  afterPaint(what) {
    requestAnimationFrame(() => requestAnimationFrame(what));
  }

  fit() {
    this.view.fit(this.drawing.box());
    this.moved();
  }
}

// Copies: taken from what is chosen, put where the pointer is.

import { boundsOf, distance, gripsOf, midway } from './shapes.js';
import { snapAt } from './snapping.js';
import { counted, named, written } from './words.js';

/** @typedef {import('./types').Point} Point */
/** @typedef {import('./types').Entity} Entity */
/** @typedef {import('./window.js').Page} Page */

const MOST_SHOWN = 500;  // shadows of entities that follow the pointer
const NEAR = 12;         // pixels: so near to a place of what is copied, the place is what the pointer holds
const STEP = 24;         // pixels that a duplicate lies beside what it is one of

/**
 * An entity a way off.
 * @param {Entity} e @param {Point} by @returns {Entity}
 */
function shifted(e, by) {
  const move = (/** @type {Point | undefined} */ p) => p && /** @type {Point} */ ([p[0] + by[0], p[1] + by[1]]);
  const each = (/** @type {Point[] | undefined} */ points) => points && points.map((p) => /** @type {Point} */ (move(p)));
  return { ...e, start: move(e.start), end: move(e.end), centre: move(e.centre), position: move(e.position),
    point: move(e.point), control: each(e.control), vertices: each(e.vertices) };
}

/** What is copied follows the pointer until a click puts it down. */
class PasteTool {
  /** @param {Page} page @param {Clipboard} clipboard */
  constructor(page, clipboard) {
    this.page = page;
    this.clipboard = clipboard;
    this.shown = clipboard.ids.slice(0, MOST_SHOWN).flatMap((id) => page.drawing.entities.get(id) || []);
    if (page.pointer) this.look(null, page.pointer, page.view.toScreen(page.pointer));
  }

  /** @param {Point} p */
  #snapped(p) {
    return snapAt(this.page.drawing.entities.values(), this.page.view, p);
  }

  /** @param {Point} p @returns {Point} */
  #way(p) {
    const snap = this.#snapped(p), { base } = this.clipboard;
    /** @type {Point} */
    const by = [snap.point[0] - base[0], snap.point[1] - base[1]];
    return snap.word ? by : this.page.view.rounded(by);
  }

  /** @param {import('./picking.js').Pick | null} _pick @param {Point} p @param {Point} at */
  look(_pick, p, at) {
    const snap = this.#snapped(p), by = this.#way(p), { page } = this;
    page.scene.snap = snap.word ? { point: snap.point, word: snap.word } : null;
    page.scene.sketch = this.shown.map((e) => shifted(e, by));
    page.tip(`${counted(this.clipboard.ids.length, 'entity')} by ${written(page.view.rounded(by))}`, at);
    page.paintSoon(false);
  }

  /** @param {import('./picking.js').Pick | null} _pick @param {Point} p */
  click(_pick, p) {
    void this.clipboard.put(this.#way(p));
  }

  finish() {
    if (this.page.pointer) this.click(null, this.page.pointer);
  }

  leave() {
    const { page } = this;
    page.scene.snap = null;
    page.scene.sketch = [];
    page.tip('');
    page.paintSoon(false);
  }
}

export class Clipboard {
  /** @param {Page} page */
  constructor(page) {
    this.page = page;
    /** @type {string[]} */
    this.ids = [];
    /** @type {Point} */
    this.base = [0, 0];  // what the pointer holds it at
  }

  forget() {
    this.ids = [];
    this.#cut([]);
  }

  /** What was cut is copied only. */
  uncut() {
    if (this.page.scene.cut.size) this.#cut([]);
  }

  /** @param {string[]} ids that go when they are put down elsewhere */
  #cut(ids) {
    const { scene, painter } = this.page;
    painter.touch([...scene.cut, ...ids].filter((id) => this.page.drawing.entities.has(id)));
    scene.cut = new Set(ids);
    this.page.paintSoon(true);
  }

  /** What is chosen, or under the pointer, but for what the drawing may not move. */
  #wanted() {
    const { scene, drawing } = this.page;
    return [...(scene.selected.size ? scene.selected : scene.hot)].filter((id) => {
      const e = drawing.entities.get(id);
      return e && !e.fixed;
    });
  }

  /** @param {boolean} cuts */
  copy(cuts) {
    const ids = this.#wanted(), { page } = this;
    if (!ids.length) return page.say('choose something to copy first');
    this.ids = ids;
    this.base = this.#hold();
    this.#cut(cuts ? ids : []);
    page.say(`${counted(ids.length, 'entity')} ${cuts ? 'cut: it goes when it is put down elsewhere' : 'copied'}; Ctrl+V puts ${ids.length > 1 ? 'them' : 'it'} down`);
  }

  /**
   * Where it is held: at the place near the pointer, else at the pointer, else in its middle.
   * @returns {Point}
   */
  #hold() {
    const { drawing, pointer, view } = this.page, entities = this.ids.flatMap((id) => drawing.entities.get(id) || []);
    const box = [Infinity, Infinity, -Infinity, -Infinity];
    for (const e of entities) {
      const [x0, y0, x1, y1] = boundsOf(e);
      box.splice(0, 4, Math.min(box[0], x0), Math.min(box[1], y0), Math.max(box[2], x1), Math.max(box[3], y1));
    }
    const reach = NEAR / view.scale;
    if (!pointer || pointer[0] < box[0] - reach || pointer[1] < box[1] - reach || pointer[0] > box[2] + reach || pointer[1] > box[3] + reach)
      return midway([box[0], box[1]], [box[2], box[3]]);
    const places = entities.flatMap((e) => gripsOf(e).map((grip) => grip.point));
    const near = places.filter((p) => distance(p, pointer) <= reach).sort((a, b) => distance(a, pointer) - distance(b, pointer));
    return near[0] || pointer;
  }

  paste() {
    const { page } = this;
    this.ids = this.ids.filter((id) => page.drawing.entities.has(id));
    if (!this.ids.length) return page.say('nothing was copied: choose something, then Ctrl+C');
    page.toolbox.take({ name: 'paste', label: 'Paste', key: '', icon: '', hint: 'Click where it is to be; Esc leaves it.',
      make: () => new PasteTool(page, this) });
  }

  /** @param {Point} by */
  async put(by) {
    const { page } = this, cut = this.ids.filter((id) => page.scene.cut.has(id));
    page.toolbox.leave();
    const made = await this.#copied(by);
    if (!made.length || !cut.length) return;
    const erased = await page.tie(`erase ${cut.map(named).join(' ')}`);
    if (erased?.error) return page.say(`what was cut stays: ${erased.error}`, true);
    this.ids = made;
    this.base = [this.base[0] + by[0], this.base[1] + by[1]];
    this.#cut([]);
    page.looking.choose(made, false, true);
  }

  async duplicate() {
    const ids = this.#wanted(), { page } = this;
    if (!ids.length) return page.say('choose something to copy first');
    const step = STEP / page.view.scale;
    const held = this.ids;
    this.ids = ids;
    await this.#copied(page.view.rounded([step, -step]));
    this.ids = held;
  }

  /**
   * The copies, which are chosen then; none where they could not be made.
   * @param {Point} by
   */
  async #copied(by) {
    const result = await this.page.edit(`copy ${this.ids.map(named).join(' ')} by ${written(by)}`);
    if (!result?.done) return [];
    const made = result.entities.filter((each) => each.fate === 'created').map((each) => each.id);
    this.page.looking.choose(made, false, true);
    return made;
  }
}

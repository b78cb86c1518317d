// The pointer on the drawing: looking, taking hold, pulling, choosing.

import { Fingers } from './fingers.js';
import { picksAt, picksIn } from './picking.js';
import { distance } from './shapes.js';
import { isIn, snapAt, tieOf } from './snapping.js';
import { named, placed, spoken, written } from './words.js';
import { Latest, attempt, attemptPull, standsAlone } from './link.js';

/** @typedef {import('./types').Point} Point */
/** @typedef {import('./picking.js').Pick} Pick */
/** @typedef {import('./window.js').Page} Page */

/**
 * With Ctrl, nothing is snapped to.
 * @param {MouseEvent} event
 */
const snapsWith = (event) => !(event.ctrlKey || event.metaKey || event.altKey);

const STILL = 4;   // pixels: a pointer that moves less than this was pressed, not pulled
const RIM_OF_PULL = 200;  // pixels round the screen: what lies there still bears signs that can be seen
const COARSE = 2;  // fingers are so much broader than a mouse's tip

/**
 * A way with as few digits as lead from a number to another one, to the bit if any do.
 * @param {number} from @param {number} to @param {number} short a guess
 */
function wayTo(from, to, short) {
  if (from + short === to) return short;
  for (let digits = 3; digits < 17; digits += 1) {
    const way = Number((to - from).toPrecision(digits));
    if (from + way === to) return way;
  }
  return to - from;
}

/** A pull: what it holds, from where, and the edit that it comes to. */
class Pull {
  /** @param {Pick} pick @param {Set<string>} selected @param {Point} from */
  constructor(pick, selected, from) {
    this.pick = pick;
    this.from = pick.place ? pick.point : from;
    this.many = selected.has(pick.id) && selected.size > 1 ? [...selected] : null;
    this.bends = !this.many && !pick.place && (pick.entity.type === 'circle' || pick.entity.type === 'arc');
    /** @type {import('./types').Result | null} */
    this.last = null;   // the last that can be done
    this.error = '';    // of the latest, if it cannot
    /** @type {import('./snapping.js').Snap | null} */
    this.snap = null;   // what the point is on that is pulled
    this.misses = false;  // it is held back before it gets there
    /** @type {Set<string>} what moves along, or is tied to it, is nothing to be put on */
    this.along = new Set([pick.id]);
    /** @type {import('./shapes.js').Box} what was seen, and a rim, when others were last looked for */
    this.seen = [0, 0, -1, -1];
    /** @type {string[]} entities in there */
    this.round = [];
  }

  /**
   * What the point that is pulled falls on; nothing for curves, and for what follows it anyway.
   * @param {Point} to @param {Page} page
   */
  snapped(to, page) {
    const { pick } = this, isText = pick.entity.type === 'text' || pick.entity.type === 'mtext';
    if (!pick.place || this.many || isText) return null;
    const snap = snapAt(this.#others(page), page.view, to);
    return snap.ref ? snap : null;
  }

  /**
   * What it may be put on. In a large drawing the question to the server would wait for a look at every entity: those are
   * looked at that were round the screen when the view was last another one.
   * @param {Page} page @returns {Iterable<import('./types').Entity>}
   */
  * #others({ drawing, view }) {
    const seen = view.seen(RIM_OF_PULL);
    if (this.seen.some((side, i) => side !== seen[i])) {
      this.seen = seen;
      this.round = [];
      for (const e of drawing.entities.values()) if (!e.block && isIn(e, seen)) this.round.push(e.id);
    }
    for (const id of this.round) {
      const e = this.along.has(id) ? undefined : drawing.entities.get(id);
      if (e) yield e;
    }
  }

  /** The constraint that would tie it there; empty: none. */
  tie() {
    return this.snap && !this.misses ? tieOf(this.pick.id, this.pick.place || 'whole', this.snap)[0] : '';
  }

  /** @param {Point} to @param {import('./view.js').View} view */
  textTo(to, view) {
    const { pick } = this;
    if (this.bends) {
      const centre = /** @type {Point} */ (pick.entity.centre);
      return `set ${named(pick.id)} radius ${view.rounded([distance(centre, to), 0])[0]}`;
    }
    /** @type {Point} */
    const way = [to[0] - this.from[0], to[1] - this.from[1]], short = view.rounded(way);
    const by = this.snap ? way.map((_, i) => wayTo(this.from[i], to[i], short[i])) : short;
    if (this.many) return `drag ${this.many.map(named).join(' ')} by ${written(/** @type {Point} */ (by))}`;
    const place = pick.place || (pick.entity.type === 'polyline' ? `segment:${pick.segment}` : 'whole');
    return `drag ${placed(pick.id, place)} by ${written(/** @type {Point} */ (by))}`;
  }
}

export class Hands {
  /** @param {Page} page @param {HTMLCanvasElement} canvas */
  constructor(page, canvas) {
    this.page = page;
    this.canvas = canvas;
    /** @type {{x: number, y: number, button: number, pick: Pick | null, p: Point} | null} */
    this.pressed = null;
    /** @type {Pull | null} */
    this.pull = null;
    /** @type {'pan' | 'box' | null} */
    this.way = null;
    /** @type {Point} */
    this.place = [0, 0];  // where the pointer is while it pulls
    /** @type {Point} */
    this.to = [0, 0];     // where it pulls to, which may be something near
    this.snaps = true;
    this.isSpaceDown = false;
    this.fingers = new Fingers();
    const ask = (/** @type {string} */ text) => attemptPull(text, page.view.seen(RIM_OF_PULL));
    this.latest = new Latest(ask, (result) => this.#tried(result), (failure) => this.#failed(failure), attempt);
    const on = (/** @type {string} */ name, /** @type {(event: any) => void} */ what, options = {}) =>
      canvas.addEventListener(name, what, options);
    on('pointerdown', (event) => this.#down(event));
    on('pointermove', (event) => this.#move(event));
    on('pointerup', (event) => this.#up(event));
    on('pointercancel', (event) => this.#cancel(event));
    on('pointerleave', () => this.pressed || this.page.looking.look(null));
    on('wheel', (event) => this.#wheel(event), { passive: false });
    on('contextmenu', (event) => event.preventDefault());
    on('dblclick', (event) => this.page.looking.open(this.#pick(event), this.#at(event), event.shiftKey));
  }

  /** @param {{clientX: number, clientY: number}} event @returns {Point} */
  #at(event) {
    const box = this.canvas.getBoundingClientRect();
    return [event.clientX - box.left, event.clientY - box.top];
  }

  /** @param {{clientX: number, clientY: number}} event @returns {Point} */
  #place(event) {
    return this.page.view.toDrawing(...this.#at(event));
  }

  /** @param {PointerEvent} event @returns {Pick | null} */
  #pick(event) {
    const { page } = this, ease = event.pointerType === 'touch' ? COARSE : 1;
    return picksAt(page.drawing.entities.values(), page.view, this.#place(event), page.scene.selected, ease)[0] || null;
  }

  /** @param {PointerEvent} event */
  #down(event) {
    this.canvas.focus({ preventScroll: true });
    this.canvas.setPointerCapture(event.pointerId);
    const [x, y] = this.#at(event);
    this.fingers.put(event.pointerId, [x, y]);
    if (this.fingers.count === 2) return this.#pinch();
    const pick = event.button === 0 ? this.#pick(event) : null;
    this.pressed = { x, y, button: event.button, pick, p: this.#place(event) };
    const drags = event.button === 1 || event.button === 2 || this.isSpaceDown || (event.pointerType === 'touch' && !pick);
    this.way = drags ? 'pan' : null;
    this.canvas.classList.toggle('held', this.way === 'pan' || Boolean(pick));
  }

  #pinch() {
    this.#drop();
    this.pressed = null;
  }

  /** @param {PointerEvent} event */
  #move(event) {
    const [x, y] = this.#at(event), finger = this.fingers.places.get(event.pointerId);
    if (this.fingers.spread(event.pointerId, [x, y], this.page.view)) return this.page.moved();
    if (!this.pressed) return this.page.looking.look(this.#pick(event), this.#place(event), [x, y]);
    if (this.way === 'pan' && finger) {
      this.page.view.pan(x - finger[0], y - finger[1]);
      this.page.moved();
    }
    if (finger) this.fingers.put(event.pointerId, [x, y]);
    if (this.way === 'pan') return;
    if (!this.pull && this.way !== 'box' && Math.hypot(x - this.pressed.x, y - this.pressed.y) > STILL) this.#begin([x, y]);
    if (this.pull) this.#pullTo(this.#place(event), snapsWith(event));
    else if (this.way === 'box') this.page.box(this.pressed.p, this.#place(event));
  }

  /** @param {Point} at where the pointer has come to, on the screen */
  #begin([x, y]) {
    const pick = this.pressed?.pick;
    if (standsAlone && this.pressed) {
      this.way = 'pan';
      this.page.view.pan(x - this.pressed.x, y - this.pressed.y);
      return this.page.moved();
    }
    if (!pick || !this.pressed || this.page.tool) {
      this.way = this.page.tool ? null : 'box';
      return;
    }
    if (pick.entity.block) return this.page.tip(`${pick.id} is a part of ${pick.entity.block}, which is edited as a whole`, [this.pressed.x, this.pressed.y], true);
    if (pick.entity.fixed) return this.page.tip(`${pick.id} is fixed; the drawing may not move it`, [this.pressed.x, this.pressed.y], true);
    if (this.page.isReadOnly) this.page.say('this window is for reading only: nothing that is pulled here is saved');
    this.pull = new Pull(pick, this.page.scene.selected, this.pressed.p);
    for (const id of this.page.drawing.tiedTo(pick.id, pick.place || 'whole')) this.pull.along.add(id);
    this.page.beginPull();
  }

  /** @param {Point} place @param {boolean} snaps */
  #pullTo(place, snaps) {
    const pull = /** @type {Pull} */ (this.pull), { page } = this;
    this.#aim(place, snaps);
    this.latest.want(pull.textTo(this.to, page.view));
    page.paintSoon(false);
  }

  /** @param {Point} place @param {boolean} snaps */
  #aim(place, snaps) {
    const pull = /** @type {Pull} */ (this.pull), { page } = this, before = pull.snap;
    this.place = place;
    this.snaps = snaps;
    pull.snap = snaps ? pull.snapped(place, page) : null;
    if (before?.point[0] !== pull.snap?.point[0] || before?.point[1] !== pull.snap?.point[1]) pull.misses = false;
    this.to = pull.snap?.point || place;
    page.scene.rubber = { from: pull.from, to: this.to, caught: Boolean(pull.error) };
    const tie = pull.tie();
    page.scene.snap = pull.snap && tie ? { point: pull.snap.point, word: tie.replace('constrain ', '') } : null;
  }

  /** @param {import('./types').Result} result */
  #tried(result) {
    const { pull } = this;
    if (!pull) return;
    if (result.error && pull.bends && !pull.last) {
      // Its radius is not free: then it goes as a whole.
      pull.bends = false;
      this.latest.want(pull.textTo(this.to, this.page.view));
      return;
    }
    pull.error = result.error;
    if (!result.error) {
      pull.last = result;
      for (const each of result.change?.entities || []) pull.along.add(each.id);
      const { snap } = pull, isLatest = result.text === pull.textTo(this.to, this.page.view);
      pull.misses = Boolean(snap && isLatest && this.#isHeldBack(result));
      if (snap?.ref && pull.along.has(snap.ref.entity)) return this.#pullTo(this.place, this.snaps);
      if (pull.misses) this.page.scene.snap = null;
    }
    this.page.showPull(result, pull.last);
  }

  /** @param {import('./types').Result} result whether it stays behind to be seen */
  #isHeldBack(result) {
    return (result.shortfall?.by || 0) * this.page.view.scale > 1;
  }

  /** What is seen is another part of the drawing while somebody pulls. */
  lookedElsewhere() {
    if (this.pull?.last?.isGlimpse) this.latest.want(this.pull.textTo(this.to, this.page.view));
  }

  /** @param {unknown} failure */
  #failed(failure) {
    this.#drop();
    this.page.complain(failure);
  }

  /** @param {PointerEvent} event */
  async #up(event) {
    const { pressed, pull, way } = this;
    this.fingers.lift(event.pointerId);
    this.pressed = null;
    this.way = null;
    this.canvas.classList.remove('held');
    if (!pressed) return;
    if (pull) {
      const place = this.#place(event);
      if (distance(place, this.place) * this.page.view.scale > 1) this.#aim(place, snapsWith(event));
      return this.#release();
    }
    if (way === 'box') return this.page.looking.choose(picksIn(this.page.drawing.entities.values(), pressed.p, this.#place(event)), event.shiftKey, true);
    if (way === 'pan' && pressed.button !== 0) return;
    if (pressed.button === 0 && way !== 'pan') this.page.looking.click(pressed.pick, this.#place(event), event.shiftKey || event.ctrlKey);
    else if (event.pointerType === 'touch') this.page.looking.click(null, this.#place(event), false);
  }

  /** What was seen last is what is done; a point that was put on something is tied to it, in one step with the pull. */
  async #release() {
    const pull = /** @type {Pull} */ (this.pull), { page } = this;
    const wanted = pull.textTo(this.to, page.view), tie = pull.tie();
    this.latest.forget();
    this.pull = null;
    page.scene.rubber = null;
    page.scene.snap = null;
    if (/ by -?0,-?0$/.test(wanted)) return page.endPull();
    const isCaught = Boolean(pull.error && pull.last);
    const result = await page.edit(isCaught && pull.last ? pull.last.text : wanted);
    if (tie && !isCaught && result?.done && !this.#isHeldBack(result)) await page.tieAfter(tie);
    page.endPull();
  }

  #drop() {
    this.latest.forget();
    this.pull = null;
    this.way = null;
    this.page.scene.rubber = null;
    this.page.scene.snap = null;
    this.page.endPull();
  }

  /** @param {PointerEvent} event */
  #cancel(event) {
    this.fingers.lift(event.pointerId);
    this.pressed = null;
    this.#drop();
  }

  /** Whether there was something to let go of. */
  letGo() {
    const had = Boolean(this.pull || this.way === 'box');
    this.pressed = null;
    if (had) this.#drop();
    return had;
  }

  /** @param {WheelEvent} event */
  #wheel(event) {
    event.preventDefault();
    const [x, y] = this.#at(event);
    const lines = event.deltaMode === 1 ? 16 : 1;  // a wheel that counts lines: of 16 pixels
    if (event.shiftKey || (event.deltaX !== 0 && !event.ctrlKey && Math.abs(event.deltaX) > Math.abs(event.deltaY)))
      this.page.view.pan(-lines * (event.deltaX || event.deltaY), 0);
    else this.page.view.zoom(x, y, Math.exp(-Math.max(-120, Math.min(120, event.deltaY * lines)) * (event.ctrlKey ? 0.01 : 0.0022)));
    this.page.moved();
  }
}

/**
 * How far a pull stayed behind, in words.
 * @param {import('./types').Result} result @param {string} unit @param {(id: string) => string} spokenConstraint
 */
export function shortfallInWords(result, unit, spokenConstraint) {
  const fall = result.shortfall;
  if (!fall) return '';
  const by = `stays ${spoken(fall.by, 3)} ${unit} behind`;
  return fall.heldBackBy.length ? `${by}: held by ${fall.heldBackBy.slice(0, 4).map(spokenConstraint).join(', ')}` : by;
}

// What the pointer does beside pulling: one tool is in the hand at a time. Each shows what it would do before the click.

import { Latest, attempt } from './link.js';
import { boundsOf, distance, gripsOf, nearest, piecesOf } from './shapes.js';
import { snapAt } from './snapping.js';
import { listed, named, placed, written } from './words.js';

/** @typedef {import('./types').Point} Point */
/** @typedef {import('./types').Entity} Entity */
/** @typedef {import('./types').Result} Result */
/** @typedef {import('./picking.js').Pick} Pick */
/** @typedef {import('./snapping.js').Snap} Snap */
/** @typedef {import('./window.js').Page} Page */
/** @typedef {import('./figures.js').Figure} Figure */
/**
 * One tool in the hand.
 * @typedef {{
 *   look: (pick: Pick | null, p: Point, at: Point) => void,
 *   click: (pick: Pick | null, p: Point) => void,
 *   finish: () => void,
 *   leave: () => void,
 * }} Tool
 */

const MOST_OTHERS = 200;  // curves that may cut or bound: an edit that names more is none that a person reads

/** @param {Entity} e */
const isCurve = (e) => !['point', 'text', 'mtext'].includes(e.type);

/**
 * The curves that come near another one.
 * @param {Page} page @param {Entity} to @param {number} grown by how much of the drawing's size
 */
export function othersNear(page, to, grown) {
  const box = page.drawing.box() || [0, 0, 1, 1], rim = grown * Math.hypot(box[2] - box[0], box[3] - box[1]);
  const [x0, y0, x1, y1] = boundsOf(to);
  const found = [];
  for (const e of page.drawing.entities.values()) {
    if (e.id === to.id || !isCurve(e)) continue;
    const [a, b, c, d] = boundsOf(e), isEndless = e.type === 'xline' || e.type === 'ray';
    if (isEndless || (a <= x1 + rim && c >= x0 - rim && b <= y1 + rim && d >= y0 - rim)) found.push(e.id);
  }
  return found.slice(0, MOST_OTHERS).map(named).join(' ');
}

/**
 * What a trial comes to, in words.
 * @param {Result} result @param {Page} page
 */
function told(result, page) {
  if (result.error) return result.error;
  /** @type {Record<string, number>} */
  const counts = {};
  for (const { fate } of result.constraints) counts[fate] = (counts[fate] || 0) + 1;
  const lines = [result.text.length > 70 ? `${result.text.slice(0, 70)}…` : result.text];
  lines.push(result.constraints.length ? `constraints: ${listed(counts)}` : 'every constraint kept');
  for (const { id, fate, reason } of result.constraints.slice(0, 4)) lines.push(`${fate} ${page.spokenConstraint(id)}: ${reason}`);
  return lines.join('\n');
}

/**
 * A point of a curve with as few digits as it takes to lie on it.
 * @param {Pick} pick @param {Page} page
 */
export function onCurve(pick, page) {
  const short = page.view.rounded(pick.point);
  return written(distance(nearest(pick.entity, short).point, short) === 0 ? short : pick.point);
}

/** A tool that tries an edit where the pointer is, and does it on a click. */
class Trying {
  /** @param {Page} page */
  constructor(page) {
    this.page = page;
    /** @type {Point} */
    this.at = [0, 0];
    this.wanted = '';
    this.latest = new Latest(attempt, (result) => this.tried(result), (failure) => page.complain(failure));
  }

  /** @param {string} text empty: there is nothing to try */
  want(text) {
    if (text === this.wanted) return;
    this.wanted = text;
    if (text) return this.latest.want(text);
    this.latest.forget();
    this.page.showTrial(null);
    this.page.tip('');
  }

  /** @param {Result} result */
  tried(result) {
    this.page.showTrial(result.error ? null : result);
    this.page.tip(told(result, this.page), this.at, Boolean(result.error));
    this.page.say(result.error || result.text, Boolean(result.error));
  }

  /** @param {string} text */
  async done(text) {
    this.latest.forget();
    this.wanted = '';
    this.page.showTrial(null);
    this.page.tip('');
    return this.page.edit(text);
  }

  finish() {}

  leave() {
    this.want('');
    this.page.scene.snap = null;
    this.page.scene.sketch = [];
  }
}

/** One click, one edit. */
export class PickTool extends Trying {
  /** @param {Page} page @param {(pick: Pick, p: Point, page: Page) => string} text */
  constructor(page, text) {
    super(page);
    this.text = text;
  }

  /** @param {Pick | null} pick @param {Point} p @param {Point} at */
  look(pick, p, at) {
    this.at = at;
    this.page.looking.light(pick ? [pick.id] : []);
    this.want(pick ? this.text(pick, p, this.page) : '');
  }

  /** @param {Pick | null} pick @param {Point} p */
  click(pick, p) {
    if (pick) void this.done(this.text(pick, p, this.page));
  }
}

/** Two curves and a number: fillets and chamfers; of a polyline a corner is enough. */
export class CornerTool extends Trying {
  /** @param {Page} page @param {string} verb @param {string} word before the number */
  constructor(page, verb, word) {
    super(page);
    this.verb = verb;
    this.word = word;
    /** @type {Pick | null} */
    this.first = null;
  }

  /** @param {Pick} pick */
  #cornerOf(pick) {
    const grips = gripsOf(pick.entity), i = grips.findIndex((grip) => grip.place === pick.place);
    return pick.entity.type === 'polyline' && i >= 0 ? `${this.verb} ${named(pick.id)} corner ${i} ${this.word} ${this.page.option()}` : '';
  }

  /** @param {Pick | null} pick */
  #text(pick) {
    if (!pick) return '';
    if (!this.first) return this.#cornerOf(pick);
    if (pick.id === this.first.id) return '';
    const places = this.verb === 'fillet' ? ` at ${onCurve(this.first, this.page)} ${onCurve(pick, this.page)}` : '';
    return `${this.verb} ${named(this.first.id)} ${named(pick.id)} ${this.word} ${this.page.option()}${places}`;
  }

  /** @param {Pick | null} pick @param {Point} _p @param {Point} at */
  look(pick, _p, at) {
    this.at = at;
    this.page.looking.light([...(this.first ? [this.first.id] : []), ...(pick ? [pick.id] : [])]);
    this.want(this.#text(pick));
  }

  /** @param {Pick | null} pick */
  click(pick) {
    const text = this.#text(pick);
    if (text) {
      this.first = null;
      void this.done(text);
    } else if (pick) {
      this.first = pick;
      this.page.say(`${pick.id}, and which other curve?`);
    } else {
      this.first = null;
    }
  }

  leave() {
    this.first = null;
    super.leave();
  }
}

/** Constraints and dimensions: as many places as the kind takes. */
export class ConstrainTool extends Trying {
  /** @param {Page} page @param {import('./types').Kind} kind */
  constructor(page, kind) {
    super(page);
    this.kind = kind;
    /** @type {{id: string, place: string}[]} */
    this.picks = [];
    const chosen = [...page.scene.selected];
    if (chosen.length && chosen.length <= 3) {
      this.picks = chosen.map((id) => ({ id, place: 'whole' }));
      void this.#tryNow();
    }
  }

  /** @param {{id: string, place: string}[]} picks */
  #text(picks) {
    const isPoint = (/** @type {{id: string, place: string}} */ pick) => pick.place !== 'whole' || this.page.drawing.entities.get(pick.id)?.type === 'point';
    const mixed = this.kind.name === 'coincident' && picks.length === 2 && isPoint(picks[0]) !== isPoint(picks[1]);
    const ordered = mixed && !isPoint(picks[0]) ? [picks[1], picks[0]] : picks;
    return `constrain ${mixed ? 'point_on_curve' : this.kind.name} ${ordered.map((pick) => placed(pick.id, pick.place)).join(' ')}`;
  }

  /** @param {Pick} pick */
  #placeOf(pick) {
    const place = pick.place || (pick.entity.type === 'polyline' ? `segment:${pick.segment}` : 'whole');
    return { id: pick.id, place };
  }

  /** An angle is one between two lines, unless it is asked for of one. */
  #isEnough() {
    return this.kind.isAngle ? this.picks.length > 1 : true;
  }

  /** @param {Pick | null} pick @param {Point} _p @param {Point} at */
  look(pick, _p, at) {
    this.at = at;
    this.page.looking.light([...this.picks.map((each) => each.id), ...(pick ? [pick.id] : [])]);
    this.page.scene.snap = pick?.place ? { point: pick.point, word: placed(pick.id, pick.place) } : null;
    this.page.paintSoon(false);
    const picks = pick ? [...this.picks, this.#placeOf(pick)] : this.picks;
    if (pick && picks.length > (this.kind.isAngle ? 1 : 0)) this.want(this.#text(picks));
    else this.want('');
  }

  /**
   * What is missing yet is no fault.
   * @param {Result} result
   */
  tried(result) {
    if (!result.error || this.picks.length > 0) return super.tried(result);
    this.page.showTrial(null);
    this.page.tip(`${this.kind.label}: ${this.kind.takes}`, this.at);
  }

  /** @param {Pick | null} pick */
  click(pick) {
    if (!pick) {
      this.picks = [];
      return;
    }
    this.picks.push(this.#placeOf(pick));
    void this.#tryNow();
  }

  async #tryNow() {
    if (!this.#isEnough()) return this.page.say(`${this.kind.label}: and which other line? Enter takes one alone`);
    const result = await attempt(this.#text(this.picks));
    if (!result.error) return this.#add(result.text);
    if (this.picks.length >= 3 || !/expected .* takes/.test(result.error)) {
      this.picks = [];
      this.page.say(result.error, true);
      return;
    }
    this.page.say(`${this.kind.label} takes ${this.kind.takes}`);
  }

  /** @param {string} text */
  async #add(text) {
    this.picks = [];
    const result = await this.done(text);
    const made = this.kind.isDimension && result?.constraints.find((each) => each.fate === 'added');
    if (made) this.page.afterPaint(() => this.page.openDimension(made.id));
  }

  finish() {
    if (this.picks.length) void this.#add(this.#text(this.picks));
  }

  leave() {
    this.picks = [];
    super.leave();
  }
}

/** Figures by clicks, with what they snap to tied to it. */
export class DrawTool extends Trying {
  /** @param {Page} page @param {Figure} figure */
  constructor(page, figure) {
    super(page);
    this.figure = figure;
    /** @type {Snap[]} */
    this.snaps = [];
  }

  /** @param {Pick | null} _pick @param {Point} p @param {Point} at */
  look(_pick, p, at) {
    this.at = at;
    const snap = this.#snapped(p), { scene } = this.page;
    scene.snap = snap.word ? { point: snap.point, word: snap.word } : null;
    scene.sketch = this.figure.shape([...this.snaps, snap].map((each) => each.point));
    this.page.looking.light(snap.ref ? [snap.ref.entity] : []);
    this.page.paintSoon(false);
  }

  /** @param {Point} p */
  #snapped(p) {
    return snapAt(this.page.drawing.entities.values(), this.page.view, p, this.figure.levels ? this.snaps[this.snaps.length - 1]?.point : undefined);
  }

  /** @param {Pick | null} _pick @param {Point} p */
  click(_pick, p) {
    const snap = this.#snapped(p), last = this.snaps[this.snaps.length - 1];
    if (last && distance(last.point, snap.point) === 0) return;
    this.snaps.push(snap);
    if (this.snaps.length === this.figure.clicks) void this.#draw();
  }

  finish() {
    if (this.figure.clicks === Infinity && this.snaps.length > 1) void this.#draw();
    else this.snaps = [];
  }

  async #draw() {
    const snaps = this.snaps, name = this.page.freshName(this.figure.name);
    this.snaps = [];
    this.page.scene.sketch = [];
    const result = await this.done(`${this.figure.text(snaps.map((snap) => snap.point))} as ${name}`);
    if (!result?.done) return;
    for (const text of this.figure.ties(name, snaps)) await this.page.tie(text);
    if (this.figure.goesOn && this.page.tool === this) {
      const last = snaps[snaps.length - 1];
      this.snaps = [{ point: last.point, word: 'end', ref: { entity: name, place: 'end' } }];
    }
  }

  leave() {
    this.snaps = [];
    super.leave();
  }
}

/** @param {Pick} pick */
export function endOf(pick) {
  if (pick.place === 'start' || pick.place === 'end') return pick.place;
  const pieces = piecesOf(pick.entity);
  const [from, to] = pieces.length ? [pieces[0].from, pieces[pieces.length - 1].to] : gripsOf(pick.entity).map((grip) => grip.point);
  return to && distance(pick.point, from) < distance(pick.point, to) ? 'start' : 'end';  // a text has no ends; the server says so
}

// The window: a drawing, its constraints, and hands to edit it with.

import * as link from './link.js';
import { chainOf } from './chain.js';
import { Clipboard } from './clipboard.js';
import { Drawing } from './drawing.js';
import { Files } from './files.js';
import { Hands, shortfallInWords } from './hands.js';
import { Keys } from './keys.js';
import { Line } from './line.js';
import { readGlyphs } from './marks.js';
import { Painter } from './painter.js';
import { Panel, constraintInWords } from './panel.js';
import { SaveAs } from './saveas.js';
import { Saving } from './saving.js';
import { Toolbox } from './tools.js';
import { View } from './view.js';
import { Wiggle } from './wiggle.js';
import { byId, counted, element, entityInWords, listed, named, written } from './words.js';

/** @typedef {import('./types').Point} Point */
/** @typedef {import('./types').Result} Result */
/** @typedef {import('./picking.js').Pick} Pick */

const FREEDOM_DELAY = 60;      // milliseconds: edits that follow one another are diagnosed once
const SHARP_DELAY = 150;       // milliseconds without a pan until a large drawing is drawn anew
const HINT = 'Pull points and curves · wheel zooms · right button pans · ? shows the keys';
const HINT_ALONE = 'Drag pans · wheel zooms · click a curve for its constraints · ? shows the keys';

export class Page {
  /** @param {import('./types').Language} language */
  constructor(language) {
    this.kinds = new Map(language.kinds.map((kind) => [kind.name, kind]));
    this.view = new View();
    this.drawing = new Drawing();
    this.number = 0;
    this.isReadOnly = false;
    this.isBusy = 0;
    this.lit = '';      // what is bright, by name
    this.takesSaves = false;
    this.hasUnsaved = false;
    this.file = '';
    /** @type {string[]} */
    this.forms = [];
    this.drawings = 0;  // which of those that were shown one after the other
    this.paintsAll = false;
    this.isPainting = false;
    /** @type {import('./tools.js').Tool | null} */
    this.tool = null;
    /** @type {Point | null} */
    this.pointer = null;  // where it was last
    /** @type {{text: string, error: string}[]} */
    this.log = [];
    /** @type {import('./painter.js').Scene} */
    this.scene = {
      freedom: null, hot: new Set(), hotMarks: new Set(), selected: new Set(), trial: null, fates: new Map(), gone: new Map(),
      goneEntities: new Map(), names: false, marks: true, rubber: null, sketch: [], snap: null, box: null, cut: new Set(), wiggle: [],
      pinned: { marks: new Set(), entities: new Set() },
    };
    const above = /** @type {HTMLCanvasElement} */ (byId('above'));
    this.painter = new Painter(/** @type {HTMLCanvasElement} */ (byId('drawing')), above, this.view, this.kinds);
    this.panel = new Panel(this.kinds, {
      point: (marks, entities) => this.point(marks, entities),
      pin: (marks, entities) => this.pin(marks, entities),
      refill: () => this.panel.fillConstraints(),
      choose: (entities) => this.choose(entities, false, true),
      edit: (text) => void this.edit(text),
      dimension: (id) => this.openDimension(id),
    });
    this.line = new Line(language, () => this.drawing, (text) => void this.typed(text));
    this.hands = new Hands(this, above);
    this.toolbox = new Toolbox(this, language);
    this.clipboard = new Clipboard(this);
    this.wiggle = new Wiggle(this);
    this.saving = new Saving(this);
    this.saveAs = new SaveAs(this);
    if (!link.standsAlone) this.files = new Files(this);
    document.body.classList.toggle('alone', link.standsAlone);
    this.#buttons();
    new Keys(this, above);
    this.#watchSize();
    this.hint('');
  }

  // --- The drawing as the server has it ---

  /** All anew: at the beginning, and when more has been done than this page knows of. */
  async load() {
    const state = await link.state();
    const isFirst = state.drawings !== this.drawings;
    if (isFirst && this.number > 0) this.#forgetAll();
    this.drawings = state.drawings;
    this.number = state.number;
    this.isReadOnly = state.readOnly;
    if (isFirst && state.names) this.scene.names = true;
    this.drawing = Drawing.of(state.drawing);
    this.log = state.log;
    this.painter.takeAll(this.drawing);
    this.scene.selected = new Set([...this.scene.selected].filter((id) => this.drawing.entities.has(id)));
    this.#forgetFates();
    this.panel.show(this.drawing);
    this.panel.showLog(this.log);
    byId('name').textContent = state.name;
    document.title = `${state.name} · Holdfast`;
    this.file = state.file;
    this.forms = state.forms;
    byId('back').hidden = !state.dropped;
    byId('back').textContent = `Back to ${state.own}`;
    this.takesSaves = state.takesSaves;
    this.saving.show(state.unsaved, state.canUndo, state.canRedo);
    if (isFirst) {
      this.view.fit(this.drawing.box());
      this.saving.tell(state);
    }
    this.paintSoon(true);
    this.askFreedom();
  }

  /** Another drawing comes: nothing of this one is of use any more. */
  #forgetAll() {
    this.hands.letGo();
    this.wiggle.stop();
    this.toolbox.leave();
    this.scene.selected = new Set();
    this.scene.freedom = null;
    this.scene.clashes = undefined;
    this.scene.clashing = undefined;
    this.clipboard.forget();
    this.panel.forget();
    byId('notice').hidden = true;
    this.tip('');
  }

  /** @param {number} number */
  async hear(number) {
    if (this.isBusy > 0 || number <= this.number) return;
    await this.load().catch((failure) => this.complain(failure));
  }

  /** @param {string} text an edit as users type it @returns {Promise<Result | null>} */
  async edit(text) {
    const result = await this.#sent(() => link.edit(text));
    if (result) this.#take(result);
    return result;
  }

  /**
   * @template T
   * @param {() => Promise<T>} send @returns {Promise<T | null>}
   */
  async #sent(send) {
    this.isBusy += 1;
    this.wiggle.stop();
    try {
      return await send();
    } catch (failure) {
      this.complain(failure);
      return null;
    } finally {
      this.isBusy -= 1;
    }
  }

  /** @param {string} text */
  async typed(text) {
    const result = await this.edit(text);
    if (result?.done) this.line.clear();
  }

  /** @param {Result} result */
  #take(result) {
    this.log.push({ text: result.text, error: result.error });
    this.panel.showLog(this.log);
    if (result.done && result.number > this.number + 1) return void this.#sent(() => this.load());
    this.#forgetFates();
    const { scene, drawing } = this;
    if (result.change) {
      for (const id of [...result.change.deleted, ...result.change.erased]) this.#keepGone(id);
      drawing.apply(result.change);
      this.number = result.number;
      this.painter.touch([...result.change.entities.map((e) => e.id), ...result.change.erased]);
      scene.selected = new Set([...scene.selected].filter((id) => drawing.entities.has(id)));
      scene.fates = new Map(result.constraints.map(({ id, fate }) => [id, fate]));
      scene.entityFates = new Map(result.entities.map(({ id, fate }) => [id, fate]));
      this.panel.takeFates(scene.fates, scene.gone, true);
      scene.freedom = scene.freedom && { ...scene.freedom };
      this.saving.show(Boolean(result.unsaved), Boolean(result.canUndo), Boolean(result.canRedo));
      this.panel.selected = scene.selected;
      this.panel.show(drawing);
      this.askFreedom();
    }
    this.panel.showFates(result, scene.gone);
    this.say(result.error || this.#summary(result), Boolean(result.error));
    this.look(null);
    this.paintSoon(true);
  }

  /**
   * What an edit takes away is shown struck out until the next one.
   * @param {string} id
   */
  #keepGone(id) {
    const { scene, drawing } = this, constraint = drawing.constraints.get(id), entity = drawing.entities.get(id);
    if (constraint) {
      scene.gone.set(id, constraint);
      for (const ref of constraint.refs) {
        const e = drawing.entities.get(ref.entity);
        if (e) scene.goneEntities.set(e.id, e);
      }
    }
    if (entity) scene.goneEntities.set(id, entity);
  }

  #forgetFates() {
    this.scene.fates = new Map();
    this.scene.entityFates = new Map();
    this.scene.gone = new Map();
    this.scene.goneEntities = new Map();
    this.panel.takeFates(this.scene.fates, this.scene.gone, false);
  }

  /** @param {Result} result */
  #summary(result) {
    /** @type {Record<string, number>} */
    const counts = {};
    for (const { fate } of result.constraints) counts[fate] = (counts[fate] || 0) + 1;
    const what = listed(counts), fall = shortfallInWords(result, this.drawing.unit, (id) => this.spokenConstraint(id));
    return `${result.text}: ${what ? `constraints: ${what}` : 'every constraint kept'}${fall ? `; ${fall}` : ''}`;
  }

  /** @param {string} id */
  spokenConstraint(id) {
    const constraint = this.drawing.constraints.get(id) || this.scene.trial?.change?.constraints.find((each) => each.id === id);
    const kind = constraint && this.kinds.get(constraint.type);
    return kind ? `${kind.label} ${id}` : id;
  }

  askFreedom() {
    clearTimeout(this.freedomTimer);
    this.freedomTimer = setTimeout(async () => {
      try {
        const freedom = await link.freedom();
        if (freedom.number === this.number) this.#takeFreedom(freedom);
      } catch (failure) {
        if (!(failure instanceof link.Gone)) this.complain(failure);
      }
    }, FREEDOM_DELAY);
  }

  /** @param {import('./types').Freedom} freedom */
  #takeFreedom(freedom) {
    const { scene } = this;
    scene.freedom = freedom;
    scene.clashes = [...(freedom.conflicts || []).flat(), ...(freedom.broken || []).map((each) => each.id)];
    scene.clashing = new Set(scene.clashes.flatMap((id) => (this.drawing.constraints.get(id)?.refs || []).map((ref) => ref.entity)));
    this.panel.freedom = freedom;
    this.panel.fillConstraints();
    const state = byId('state');
    state.replaceChildren();
    if (freedom.error) state.textContent = freedom.error;
    else if (freedom.conflicts.length) state.append(element('b', '', 'contradictory'), ` · ${counted(freedom.conflicts.length, 'conflict')}`);
    else if (freedom.freedom === 0) state.append(element('b', '', 'fully defined'));
    else state.append(element('b', '', String(freedom.freedom)), ` ${freedom.freedom === 1 ? 'degree' : 'degrees'} of freedom`);
    this.painter.touchAll();
    this.paintSoon(true);
  }

  // --- Looking, choosing, pulling ---

  /**
   * What the pointer is over.
   * @param {Pick | null} pick @param {Point} [p] @param {Point} [at] on the screen
   */
  look(pick, p, at) {
    const { scene } = this;
    if (p) this.pointer = p;
    if (this.tool && p && at) return this.tool.look(pick, p, at);
    const mark = at && !pick?.place ? this.markAt(at) : null;
    const constraint = mark && (this.drawing.constraints.get(mark) || scene.gone.get(mark));
    const hot = constraint ? constraint.refs.map((ref) => ref.entity) : pick ? [pick.id] : [];
    const hotMarks = constraint ? [constraint.id] : pick ? this.drawing.constraintsOn(pick.id) : [];
    byId('above').classList.toggle('grab', Boolean(pick && !pick.entity.fixed));
    if (!this.#light(hot, hotMarks)) return;
    if (constraint && at) this.tip(constraintInWords(constraint, this.kinds.get(constraint.type)), at);
    else if (pick && at) this.tip(this.#inWords(pick), at);
    else this.tip('');
    scene.snap = null;
  }

  /** @param {Pick} pick */
  #inWords(pick) {
    const freedom = this.scene.freedom?.entities?.[pick.id]?.words;
    const words = `${pick.id}: ${entityInWords(pick.entity)}`;
    return freedom ? `${words}\n${freedom}` : words;
  }

  /** @param {string[]} entities @param {string[]} marks @param {boolean} [isFromList] whether anything changed */
  #light(entities, marks, isFromList) {
    const { scene } = this;
    const key = [...entities, '', ...marks].join('\n');
    if (key === this.lit) return false;
    this.lit = key;
    scene.hot = new Set(entities);
    scene.hotMarks = new Set(marks);
    this.panel.light(scene.hotMarks, !isFromList);
    this.paintSoon(true);
    return true;
  }

  /**
   * From a list.
   * @param {string[]} marks @param {string[]} entities
   */
  point(marks, entities) {
    this.#light(entities, marks, true);
  }

  /**
   * What stays bright whatever is pointed at.
   * @param {string[]} marks @param {string[]} entities
   */
  pin(marks, entities) {
    this.scene.pinned = { marks: new Set(marks), entities: new Set(entities) };
    this.paintSoon(true);
  }

  /**
   * The constraint whose mark is at a point of the screen.
   * @param {Point} at
   */
  markAt([x, y]) {
    const found = this.painter.placed.find((each) => Math.abs(each.x - x) * 2 <= each.w + 2 && Math.abs(each.y - y) * 2 <= each.h + 2);
    return found && !found.mark.isSpot ? found.mark.id : null;
  }

  /** @param {Pick | null} pick @param {Point} p @param {boolean} adds */
  click(pick, p, adds) {
    if (this.tool) return this.tool.click(pick, p);
    const mark = pick?.place ? null : this.markAt(this.view.toScreen(p));
    const constraint = mark ? this.drawing.constraints.get(mark) : undefined;
    if (constraint) return this.choose(constraint.refs.map((ref) => ref.entity), adds, true);
    this.choose(pick ? [pick.id] : [], adds, false);
  }

  /** @param {string[]} ids @param {boolean} adds @param {boolean} isSet that are chosen, not toggled */
  choose(ids, adds, isSet) {
    const { scene } = this;
    scene.box = null;
    if (!adds) scene.selected = new Set(ids);
    else for (const id of ids) if (!isSet && scene.selected.has(id)) scene.selected.delete(id); else scene.selected.add(id);
    this.panel.selected = scene.selected;
    this.panel.fillConstraints();
    if (ids.length === 1) this.say(this.nameOf(ids[0]));
    this.paintSoon(true);
  }

  /** @param {string} id */
  nameOf(id) {
    const e = this.drawing.entities.get(id), words = this.scene.freedom?.entities?.[id]?.words;
    return e ? `${id}: ${entityInWords(e)}${words ? `, ${words}` : ''}, ${counted(this.drawing.constraintsOn(id).length, 'constraint')}` : id;
  }

  /** @param {Point} from @param {Point} to */
  box(from, to) {
    this.scene.box = { from, to };
    this.paintSoon(false);
  }

  beginPull() {
    this.wiggle.stop();
    this.tip('');
    this.#forgetFates();
    this.panel.hideFates();
    this.panel.fillConstraints();
  }

  /** @param {Result} result @param {Result | null} last */
  showPull(result, last) {
    const { scene } = this;
    scene.trial = last;
    if (scene.rubber) scene.rubber.caught = Boolean(result.error);
    this.painter.lift(new Set((last?.change?.entities || []).map((e) => e.id)));
    this.say(result.error || `${result.text}${result.shortfall ? `: ${shortfallInWords(result, this.drawing.unit, (id) => this.spokenConstraint(id))}` : ''}`, Boolean(result.error));
    this.paintSoon(true);
  }

  endPull() {
    const { scene } = this;
    scene.trial = null;
    scene.box = null;
    this.painter.lift(new Set());
    this.paintSoon(true);
  }

  /**
   * What a tool would do.
   * @param {Result | null} trial
   */
  showTrial(trial) {
    this.scene.trial = trial;
    this.painter.lift(new Set((trial?.change?.entities || []).map((e) => e.id)));
    this.paintSoon(true);
  }

  /**
   * What a tool is pointed at.
   * @param {string[]} entities
   */
  light(entities) {
    this.#light(entities, []);
  }

  /** The number that a tool works with. */
  option() {
    return Number(/** @type {HTMLInputElement} */ (byId('option')).value) || 1;
  }

  /**
   * @param {string} label empty: the tool takes no number
   */
  showOption(label) {
    const option = /** @type {HTMLInputElement} */ (byId('option')), box = this.drawing.box();
    byId('options').hidden = !label;
    byId('option-label').textContent = label;
    // A twentieth of the drawing's smaller side looks like a fillet, of whatever size the drawing is.
    if (label && !option.value && box) option.value = String(Number((Math.min(box[2] - box[0], box[3] - box[1]) / 20 || 1).toPrecision(1)));
  }

  /**
   * @param {string} text empty: what pulling takes
   */
  hint(text) {
    byId('hint').textContent = text || (link.standsAlone ? HINT_ALONE : HINT);
  }

  /**
   * A name that nothing has.
   * @param {string} base
   */
  freshName(base) {
    let number = 1;
    while (this.drawing.entities.has(`${base}${number}`)) number += 1;
    return `${base}${number}`;
  }

  /**
   * What belongs to the edit before and is undone with it, such as a tie that drawing suggests; one that follows already
   * is not made.
   * @param {string} text
   */
  async tie(text) {
    const result = await this.#sent(() => link.follow(text));
    if (result?.done) this.#take(result);
    return result;
  }

  /**
   * The tie of a point that was put on something: why it is not made is told.
   * @param {string} text
   */
  async tieAfter(text) {
    const result = await this.tie(text);
    if (result?.error) this.say(`not tied: ${result.error}`);
  }

  /**
   * @param {() => void} what is to be done when all is drawn
   */
  afterPaint(what) {
    requestAnimationFrame(() => requestAnimationFrame(what));
  }

  /**
   * A double click: on a dimension, or on a curve, which takes all that is joined to it.
   * @param {Pick | null} pick @param {Point} at on the screen @param {boolean} adds
   */
  open(pick, at, adds) {
    if (this.tool) return this.tool.finish();
    const mark = pick?.place ? null : this.markAt(at);
    if (mark && this.kinds.get(this.drawing.constraints.get(mark)?.type || '')?.isDimension) return this.openDimension(mark);
    if (pick && !mark) this.chooseChain([pick.id], adds);
  }

  /** @param {string[]} ids @param {boolean} adds */
  chooseChain(ids, adds) {
    if (!ids.length) return this.say('point at a curve, or choose one: J takes all that are joined to it');
    const chain = chainOf(this.drawing, ids);
    this.choose(chain, adds, true);
    this.say(`${counted(chain.length, 'entity')} joined end to end`);
  }

  /**
   * Its value is edited where it stands.
   * @param {string} id
   */
  openDimension(id) {
    if (link.standsAlone) return;
    const constraint = this.drawing.constraints.get(id);
    if (!constraint || constraint.value === undefined) return;
    const placed = this.painter.placed.find((each) => each.mark.id === id);
    const [x, y] = placed ? [placed.x, placed.y] : [this.view.width / 2, this.view.height / 2];
    const isAngle = this.kinds.get(constraint.type)?.isAngle, value = isAngle ? constraint.value * 180 / Math.PI : constraint.value;
    byId('above').focus();  // what was open closes
    const input = element('input');
    input.id = 'inline';
    input.setAttribute('aria-label', `value of ${id}; a number, or = and a formula`);
    input.value = constraint.formula ? `= ${constraint.formula}` : String(Number(value.toPrecision(12)));
    input.style.left = `${Math.max(4, Math.min(this.view.width - 140, x - 65))}px`;
    input.style.top = `${Math.max(4, Math.min(this.view.height - 34, y - 15))}px`;
    byId('stage').append(input);
    input.select();
    input.focus();
    input.addEventListener('keydown', async (event) => {
      event.stopPropagation();
      if (event.key === 'Escape') byId('above').focus();
      if (event.key !== 'Enter') return;
      const result = await this.edit(`set ${named(id)} ${input.value.trim()}`);
      if (result?.done) byId('above').focus();
    });
    input.addEventListener('blur', () => input.remove());
  }

  // --- What the page says ---

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
    if (failure instanceof link.Gone) this.showGone(true);
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

  // --- Painting ---

  /** @param {boolean} all not only what follows the pointer */
  paintSoon(all) {
    this.paintsAll = this.paintsAll || all;
    if (this.isPainting) return;
    this.isPainting = true;
    requestAnimationFrame(() => {
      this.isPainting = false;
      if (this.paintsAll) this.painter.paintBelow(this.drawing, this.scene);
      this.paintsAll = false;
      this.painter.paintAbove(this.drawing, this.scene);
      document.body.dataset.painted = String(Number(document.body.dataset.painted || 0) + 1);
    });
  }

  /** The view is another one. */
  moved() {
    this.tip('');
    if (!this.painter.shift()) return this.paintSoon(true);
    clearTimeout(this.sharpTimer);
    this.sharpTimer = setTimeout(() => this.paintSoon(true), SHARP_DELAY);
    this.paintSoon(false);
  }

  #watchSize() {
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

  // --- Buttons ---

  #buttons() {
    const on = (/** @type {string} */ id, /** @type {() => void} */ what) => byId(id).addEventListener('click', what);
    on('undo', () => void this.edit('undo'));
    on('redo', () => void this.edit('redo'));
    on('fit', () => this.fit());
    on('copy-log', () => void this.copyLog());
    byId('copies').addEventListener('click', (event) => {
      if (event.target instanceof HTMLAnchorElement) byId('copies').removeAttribute('open');
    });
    byId('options').addEventListener('submit', (event) => {
      event.preventDefault();
      byId('above').focus();
    });
    byId('new-parameter').addEventListener('submit', (event) => {
      event.preventDefault();
      const [name, formula] = ['parameter-name', 'parameter-formula'].map((id) => /** @type {HTMLInputElement} */ (byId(id)).value.trim());
      if (name && formula) void this.edit(`parameter ${name} = ${formula}`);
    });
  }

  fit() {
    this.view.fit(this.drawing.box());
    this.moved();
  }

  save() {
    return this.saving.save();
  }

  async copyLog() {
    const script = this.log.filter((edit) => !edit.error).map((edit) => edit.text).join('\n');
    await navigator.clipboard.writeText(script).then(() => this.say('the edits are in the clipboard'),
                                                    () => this.say('the clipboard is not to be had; download the script instead', true));
  }

  escape() {
    this.wiggle.stop();
    if (this.hands.letGo()) return true;
    if (this.tool) {
      this.toolbox.leave();
      return true;
    }
    this.clipboard.uncut();
    this.choose([], false, true);
    this.look(null);
    return true;
  }
}

async function start() {
  const language = await link.language();
  byId('signs').innerHTML = `<svg>${language.glyphs}</svg>`;
  readGlyphs(byId('signs'));
  const page = new Page(language);
  Object.assign(window, { holdfast: page });  // for the curious, at the console, and for tests
  await page.load();
  let wasGone = false;
  for (const copy of document.querySelectorAll('#copies a')) copy.setAttribute('href', await link.ours(copy.getAttribute('href') || ''));
  const complain = (/** @type {unknown} */ failure) => page.complain(failure);
  await link.listen((number) => void page.hear(number), () => void page.saving.heed().catch(complain), (isThere) => {
    page.showGone(!isThere);
    if (isThere && wasGone) page.load().catch(complain);
    wasGone = !isThere;
  });
  document.body.dataset.ready = 'yes';
}

start().catch((failure) => {
  byId('said').textContent = failure instanceof Error ? failure.message : String(failure);
  byId('said').classList.add('bad');
});

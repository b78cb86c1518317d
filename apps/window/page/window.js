// The window: a drawing, its constraints, and hands to edit it with.

import * as link from './link.js';
import { Clipboard } from './clipboard.js';
import { openDimension } from './dimension.js';
import { Drawing } from './drawing.js';
import { Files } from './files.js';
import { FreedomAsked } from './freedom.js';
import { Hands, shortfallInWords } from './hands.js';
import { Keys } from './keys.js';
import { KeptEdits } from './kept.js';
import { Line } from './line.js';
import { Looking } from './looking.js';
import { readGlyphs } from './marks.js';
import { Panel } from './panel.js';
import { SaveAs } from './saveas.js';
import { Saving } from './saving.js';
import { Screen } from './screen.js';
import { Toolbox } from './toolbox.js';
import { Wiggle } from './wiggle.js';
import { byId, listed } from './words.js';

/** @typedef {import('./types').Point} Point */
/** @typedef {import('./types').Result} Result */

const HINT = 'Pull points and curves · wheel zooms · right button pans · ? shows the keys';
const HINT_ALONE = 'Drag pans · wheel zooms · click a curve for its constraints · ? shows the keys';

export class Page extends Screen {
  /** @param {import('./types').Language} language */
  constructor(language) {
    const above = /** @type {HTMLCanvasElement} */ (byId('above'));
    super(new Map(language.kinds.map((kind) => [kind.name, kind])), above);
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
    /** @type {import('./tools.js').Tool | null} */
    this.tool = null;
    /** @type {Point | null} */
    this.pointer = null;  // where it was last
    /** @type {{text: string, error: string}[]} */
    this.log = [];
    /** @type {Panel} */
    this.panel = new Panel(this.kinds, {
      point: (marks, entities) => this.looking.point(marks, entities),
      pin: (marks, entities) => this.looking.pin(marks, entities),
      refill: () => this.panel.fillConstraints(),
      choose: (entities) => this.looking.choose(entities, false, true),
      edit: (text) => void this.edit(text),
      dimension: (id) => this.openDimension(id),
    });
    this.looking = new Looking(this);
    this.line = new Line(language, () => this.drawing, (text) => void this.typed(text));
    this.hands = new Hands(this, above);
    this.toolbox = new Toolbox(this, language);
    this.clipboard = new Clipboard(this);
    this.wiggle = new Wiggle(this);
    this.saving = new Saving(this);
    this.kept = new KeptEdits(this);
    this.freedom = new FreedomAsked(this);
    this.saveAs = new SaveAs(this);
    if (!link.standsAlone) this.files = new Files(this);
    document.body.classList.toggle('alone', link.standsAlone);
    this.#buttons();
    new Keys(this, above);
    this.watchSize();
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
    this.freedom.ask();
    void this.kept.look();
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
      this.freedom.ask();
    }
    this.panel.showFates(result, scene.gone);
    this.say(result.error || this.#summary(result), Boolean(result.error));
    this.looking.look(null);
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

  // --- Looking, choosing, pulling ---

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

  /** The view is another one. */
  moved() {
    super.moved();
    this.hands.lookedElsewhere();
  }

  /** @param {Result} result @param {Result | null} last */
  showPull(result, last) {
    const { scene } = this;
    scene.trial = last;
    if (scene.rubber) scene.rubber.caught = Boolean(result.error);
    this.painter.lift(new Set((last?.change?.entities || []).map((e) => e.id)));
    this.say(result.error || `${result.text}${result.shortfall ? `: ${shortfallInWords(result, this.drawing.unit, (id) => this.spokenConstraint(id))}` : ''}`, Boolean(result.error));
    this.paintNow();
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
   * Its value is edited where it stands.
   * @param {string} id
   */
  openDimension(id) {
    if (!link.standsAlone) openDimension(this, id);
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
    this.looking.choose([], false, true);
    this.looking.look(null);
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
  await link.listen((number) => void page.hear(number), () => {
    page.saving.heed().catch(complain);
    void page.kept.look();
  }, (isThere) => {
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

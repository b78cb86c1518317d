// The lists beside the drawing: constraints, what the last edit did, the edits so far, parameters.

import { Filters } from './filters.js';
import { standsAlone } from './link.js';
import { Troubles } from './troubles.js';
import { byId, counted, element, named, placesOf, placeText, spoken } from './words.js';

/** @typedef {import('./types').Constraint} Constraint */
/** @typedef {import('./drawing.js').Drawing} Drawing */
/**
 * @typedef {{
 *   point: (marks: string[], entities: string[]) => void,
 *   pin: (marks: string[], entities: string[]) => void,
 *   refill: () => void,
 *   choose: (entities: string[]) => void,
 *   edit: (text: string) => void,
 *   dimension: (id: string) => void,
 * }} Wishes what the reader of a list may want of the rest of the page
 */

const MOST_ROWS = 300;  // a list is read by filtering it, not by scrolling on
const CLASS = { deleted: 'deleted', changed: 'pointed', 're-pointed': 'pointed', added: 'added', restored: 'added',
  erased: 'deleted', edited: 'edited', created: 'added', followed: 'followed' };

/** @param {string} fate */
export const classOf = (fate) => CLASS[/** @type {keyof typeof CLASS} */ (fate)] || '';

/**
 * The sign of a kind, as the server draws it.
 * @param {import('./types').Kind | undefined} kind
 */
export function signOf(kind) {
  const holder = element('span', 'holder');
  holder.innerHTML = kind?.icon || '';
  return holder;
}

export class Panel {
  /** @param {Map<string, import('./types').Kind>} kinds @param {Wishes} wishes */
  constructor(kinds, wishes) {
    this.kinds = kinds;
    this.wishes = wishes;
    /** @type {Drawing | null} */
    this.drawing = null;
    /** @type {Set<string>} */
    this.selected = new Set();
    /** @type {import('./types').Freedom | null} */
    this.freedom = null;
    /** @type {Map<string, HTMLElement>} */
    this.rows = new Map();
    /** @type {Map<string, Constraint>} what the last edit took away */
    this.gone = new Map();
    this.troubles = new Troubles(kinds, wishes);
    this.filters = new Filters(kinds, signOf, () => this.fillConstraints());
    byId('filter').addEventListener('input', () => this.fillConstraints());
    this.#tabs();
  }

  #tabs() {
    const heads = [...document.querySelectorAll('[role="tab"]')].map((head) => /** @type {HTMLElement} */ (head));
    const open = (/** @type {HTMLElement} */ chosen) => heads.forEach((head) => {
      const isChosen = head === chosen;
      head.setAttribute('aria-selected', String(isChosen));
      head.tabIndex = isChosen ? 0 : -1;
      byId(head.getAttribute('aria-controls') || '').hidden = !isChosen;
    });
    heads.forEach((head, i) => {
      head.addEventListener('click', () => open(head));
      head.addEventListener('keydown', (event) => {
        const step = { ArrowRight: 1, ArrowLeft: heads.length - 1 }[event.key];
        if (!step) return;
        const next = heads[(i + step) % heads.length];
        open(next);
        next.focus();
      });
    });
  }

  /** Another drawing comes. */
  forget() {
    this.selected = new Set();
    this.freedom = null;
    /** @type {HTMLInputElement} */ (byId('filter')).value = '';
    this.filters.forget();
    this.hideFates();
  }

  /** @param {Drawing} drawing */
  show(drawing) {
    this.drawing = drawing;
    this.fillConstraints();
    this.fillParameters();
  }

  /**
   * What the last edit did to constraints: none when there was no edit.
   * @param {Map<string, string>} fates @param {Map<string, Constraint>} gone @param {boolean} isTold
   */
  takeFates(fates, gone, isTold) {
    this.gone = gone;
    this.filters.takeFates(fates, isTold);
  }

  // --- Constraints ---

  /** @param {string} id */
  #label(id) {
    const c = this.drawing?.constraints.get(id) || this.gone.get(id);
    return c ? this.kinds.get(c.type)?.label || c.type : '';
  }

  fillConstraints() {
    if (!this.drawing) return;
    const all = [...this.drawing.constraints.values()].filter((c) => c.type !== 'internal');
    byId('count').textContent = String(all.length);
    const words = /** @type {HTMLInputElement} */ (byId('filter')).value.toLowerCase().split(/\s+/).filter(Boolean);
    const shown = [...all, ...[...this.gone.values()].filter((c) => c.type !== 'internal')];
    const found = this.filters.pass(shown.filter((c) => this.#isOnSelection(c) && words.every((word) => this.#textOf(c).includes(word))));
    const list = byId('list');
    this.rows.clear();
    list.replaceChildren(...found.slice(0, MOST_ROWS).map((c) => this.#row(c)));
    if (found.length > MOST_ROWS) list.append(element('li', 'quiet', `and ${found.length - MOST_ROWS} more; filter to see them`));
    if (!found.length) list.append(element('li', 'quiet', all.length ? 'none of the constraints fits' : 'there are no constraints yet'));
    const selection = byId('selection');
    selection.hidden = this.selected.size === 0;
    selection.replaceChildren('on ', element('b', '', [...this.selected].slice(0, 12).join(' ')), `: ${counted(found.length, 'constraint')}`);
    this.troubles.fill(this.drawing, this.freedom);
  }

  /** @param {Constraint} c */
  #isOnSelection(c) {
    return this.selected.size === 0 || c.refs.some((ref) => this.selected.has(ref.entity));
  }

  /** @param {Constraint} c */
  #textOf(c) {
    return `${c.id} ${c.name || ''} ${this.#label(c.id)} ${placesOf(c)} ${c.text || ''}`.toLowerCase();
  }

  /** @param {Constraint} c */
  #row(c) {
    const item = element('li'), row = element('button', 'row'), kind = this.kinds.get(c.type);
    row.type = 'button';
    row.append(signOf(kind), element('span', 'what', `${c.name || kind?.label || c.type}${c.active === false ? ', switched off' : ''}`),
               c.text ? element('span', 'value', c.text + (c.formula ? ` = ${c.formula}` : '')) : element('span', 'id', c.id),
               element('span', 'on', placesOf(c)));
    row.title = c.id;
    row.classList.toggle('gone', this.gone.has(c.id));
    row.classList.toggle('off', c.active === false || c.driving === false);
    row.classList.toggle('clash', this.isClashing(c.id));
    const entities = c.refs.map((ref) => ref.entity);
    for (const name of ['pointerenter', 'focus']) row.addEventListener(name, () => this.wishes.point([c.id], entities));
    for (const name of ['pointerleave', 'blur']) row.addEventListener(name, () => this.wishes.point([], []));
    row.addEventListener('click', () => this.wishes.choose(entities));
    row.addEventListener('dblclick', () => kind?.isDimension && !this.gone.has(c.id) && this.wishes.dimension(c.id));
    row.addEventListener('keydown', (event) => {
      if (this.gone.has(c.id)) return;
      if (event.key === 'Delete') this.wishes.edit(`delete ${named(c.id)}`);
      if (event.key === 's') this.wishes.edit(`${c.active === false ? 'unsuppress' : 'suppress'} ${named(c.id)}`);
      if (event.key === 'F2' && kind?.isDimension) this.wishes.dimension(c.id);
    });
    this.rows.set(c.id, row);
    item.append(row);
    return item;
  }

  /** @param {string} id */
  isClashing(id) {
    return Boolean(this.freedom && (this.freedom.conflicts || []).some((set) => set.includes(id)));
  }

  /** @param {Set<string>} ids @param {boolean} scrolls to the first: a list that is pointed at stays where it is */
  light(ids, scrolls) {
    for (const [id, row] of this.rows) row.classList.toggle('hot', ids.has(id));
    const [first] = ids;
    if (scrolls && first) this.rows.get(first)?.scrollIntoView({ block: 'nearest' });
  }

  // --- What the last edit did ---

  /**
   * @param {import('./types').Result} result @param {Map<string, Constraint>} gone
   */
  showFates(result, gone) {
    const box = byId('fates'), head = element('header');
    head.append(element('code', '', result.text), element('span', 'time', `  ${spoken((result.seconds || 0) * 1000, 2)} ms`));
    box.replaceChildren(head);
    box.hidden = false;
    if (result.error) {
      box.append(element('p', 'error', result.error));
      return;
    }
    box.append(this.#chips(result.constraints));
    for (const fate of result.constraints.slice(0, 60)) box.append(this.#fateRow(fate, gone));
    if (result.constraints.length > 60) box.append(element('p', 'quiet', `and ${result.constraints.length - 60} more`));
    for (const remark of result.remarks) box.append(element('p', 'remark', remark));
    const followed = result.entities.filter((e) => e.fate === 'followed');
    if (followed.length) box.append(this.#followers(followed));
  }

  /** @param {import('./types').Fate[]} fates */
  #chips(fates) {
    const chips = element('div', 'chips');
    /** @type {Record<string, number>} */
    const counts = {};
    for (const { fate } of fates) counts[fate] = (counts[fate] || 0) + 1;
    for (const [fate, count] of Object.entries(counts)) chips.append(element('span', `chip ${classOf(fate)}`, `${count} ${fate}`));
    if (!fates.length) chips.append(element('span', 'chip', 'every constraint kept'));
    return chips;
  }

  /** @param {import('./types').Fate} fate @param {Map<string, Constraint>} gone */
  #fateRow(fate, gone) {
    const c = this.drawing?.constraints.get(fate.id) || gone.get(fate.id);
    const row = element('button', `fate ${classOf(fate.fate)}`), label = c ? this.kinds.get(c.type)?.label || c.type : '';
    row.type = 'button';
    row.append(element('b', classOf(fate.fate), `${label} ${c?.text || ''}`.trim() || fate.id), ` ${fate.id} ${fate.fate}`);
    const moves = (fate.moves || []).map((move) => `${move.from} → ${move.to}`).join(', ');
    row.append(element('small', '', [c ? placesOf(c) : '', moves, fate.reason].filter(Boolean).join(' · ')));
    const entities = (c?.refs || []).map((ref) => ref.entity);
    for (const name of ['pointerenter', 'focus']) row.addEventListener(name, () => this.wishes.point([fate.id], entities));
    for (const name of ['pointerleave', 'blur']) row.addEventListener(name, () => this.wishes.point([], []));
    return row;
  }

  /** @param {import('./types').EntityFate[]} followed */
  #followers(followed) {
    const names = followed.slice(0, 12).map((e) => `${e.id}${e.movedBy ? ` by ${spoken(e.movedBy, 3)}` : ''}`).join(', ');
    const text = element('p', 'remark', `followed: ${names}${followed.length > 12 ? ` and ${followed.length - 12} more` : ''}`);
    text.addEventListener('pointerenter', () => this.wishes.point([], followed.map((e) => e.id)));
    text.addEventListener('pointerleave', () => this.wishes.point([], []));
    return text;
  }

  hideFates() {
    byId('fates').hidden = true;
  }

  // --- Edits so far ---

  /** @param {{text: string, error: string}[]} edits */
  showLog(edits) {
    byId('steps').textContent = String(edits.length);
    byId('log').replaceChildren(...edits.map(({ text, error }) => {
      const item = element('li', error ? 'refused' : '');
      item.append(element('code', '', text));
      if (error) item.append(element('p', '', error));
      return item;
    }));
  }

  // --- Parameters ---

  fillParameters() {
    const unit = this.drawing?.unit || '';
    const rows = (this.drawing?.parameters || []).map((parameter) => {
      const row = element('li'), input = element('input');
      input.value = parameter.formula;
      input.readOnly = standsAlone;
      input.setAttribute('aria-label', `formula of ${parameter.name}`);
      input.addEventListener('change', () => this.wishes.edit(`parameter ${parameter.name} = ${input.value}`));
      row.append(element('code', '', parameter.name), input, element('span', '', `${spoken(parameter.value)} ${unit}`));
      return row;
    });
    byId('values').replaceChildren(...rows);
    if (!rows.length) byId('values').append(element('li', 'quiet', 'there are no parameters yet'));
  }
}

/**
 * Places in words, for tips.
 * @param {Constraint} c @param {import('./types').Kind | undefined} kind
 */
export function constraintInWords(c, kind) {
  const places = c.refs.map((ref) => placeText(ref.entity, ref.point)).join(' and ');
  return `${kind?.label || c.type}${c.text ? ` ${c.text}` : ''}${c.name ? ` “${c.name}”` : ''}: ${places} (${c.id})`;
}

// What is wrong with the constraints: sets that cannot hold together, those that others imply, and those that are switched
// off. Each can be shown, switched off and on, a dimension can be made to follow the drawing, and any can go.

import { standsAlone } from './link.js';
import { byId, counted, element, named } from './words.js';

/** @typedef {import('./types').Constraint} Constraint */
/** @typedef {import('./types').Kind} Kind */

const MOST_SETS = 5, MOST_MEMBERS = 8;

export class Troubles {
  /**
   * @param {Map<string, Kind>} kinds @param {import('./panel.js').Wishes} wishes
   */
  constructor(kinds, wishes) {
    this.kinds = kinds;
    this.wishes = wishes;
    this.shown = '';  // the set that is shown until it is let go: its members
    /** @type {import('./drawing.js').Drawing | null} */
    this.drawing = null;
    /** @type {Set<string>} */
    this.open = new Set();  // sets of which all members are listed
  }

  /** @param {import('./drawing.js').Drawing} drawing @param {import('./types').Freedom | null} freedom */
  fill(drawing, freedom) {
    this.drawing = drawing;
    const there = (/** @type {string[]} */ ids) => ids.filter((id) => drawing.constraints.has(id));
    const conflicts = (freedom?.conflicts || []).map(there).filter((set) => set.length > 0);
    const redundant = there(freedom?.redundant || []);
    const boxes = conflicts.slice(0, MOST_SETS).map((set) => this.#box('trouble', `These ${set.length} cannot hold together:`, set));
    if (conflicts.length > MOST_SETS) boxes.push(element('p', 'quiet', `and ${counted(conflicts.length - MOST_SETS, 'conflict')} more`));
    if (redundant.length) boxes.push(this.#box('trouble mild', `${counted(redundant.length, 'constraint')} that others imply:`, redundant));
    const off = [...drawing.constraints.values()].filter((c) => c.active === false).map((c) => c.id);
    if (off.length) boxes.push(this.#box('trouble rest', `${counted(off.length, 'constraint')} switched off:`, off));
    const box = byId('trouble'), held = box.contains(document.activeElement) ? document.activeElement?.getAttribute('aria-label') : null;
    box.replaceChildren(...boxes);
    const again = held && [...box.querySelectorAll('button')].find((button) => button.getAttribute('aria-label') === held);
    if (again) again.focus();
    if (this.shown && ![...conflicts, redundant, off].some((set) => set.join(' ') === this.shown)) this.#pin('', []);
  }

  /** @param {string} className @param {string} title @param {string[]} ids */
  #box(className, title, ids) {
    const box = element('div', className), key = ids.join(' '), isShown = this.shown === key;
    const all = this.#button(isShown ? 'let go' : 'show all', `${isShown ? 'let go' : 'show all'}: ${counted(ids.length, 'constraint')}`, () => {
      this.#pin(isShown ? '' : key, isShown ? [] : ids);
      this.wishes.refill();
    });
    all.setAttribute('aria-pressed', String(isShown));
    const head = element('p', '', `${title} `), list = element('ul');
    head.append(all);
    const shown = this.open.has(key) ? ids : ids.slice(0, MOST_MEMBERS);
    list.append(...shown.map((id) => this.#member(id)));
    box.append(head, list);
    if (shown.length < ids.length)
      box.append(this.#button(`${ids.length - shown.length} more`, `${ids.length - shown.length} more constraints`, () => {
        this.open.add(key);
        this.wishes.refill();
      }));
    return box;
  }

  /** @param {string} id */
  #member(id) {
    const item = element('li'), c = this.drawing?.constraints.get(id), kind = this.kinds.get(c?.type || '');
    const name = `${kind?.label || c?.type || ''}${c?.text ? ` ${c.text}` : ''} ${id}`, entities = this.#entities([id]);
    const show = this.#button('show', `show ${name}`, () => this.wishes.choose(entities));
    for (const over of ['pointerenter', 'focusin']) item.addEventListener(over, () => this.wishes.point([id], entities));
    for (const out of ['pointerleave', 'focusout']) item.addEventListener(out, () => this.wishes.point([], []));
    const acts = element('span', 'acts');
    acts.append(show);
    item.append(element('span', '', name), acts);
    if (standsAlone) return item;
    if (c?.active === false) acts.append(this.#button('unsuppress', `unsuppress ${name}: it holds again`, () => this.wishes.edit(`unsuppress ${named(id)}`)));
    else acts.append(this.#button('suppress', `suppress ${name}: it stays and holds nothing`, () => this.wishes.edit(`suppress ${named(id)}`)));
    if (kind?.isDimension && c?.active !== false && c?.driving !== false)
      acts.append(this.#button('measure', `measure ${name}: it follows the drawing`, () => this.wishes.edit(`set ${named(id)} measured`)));
    acts.append(this.#button('delete', `delete ${name}`, () => this.wishes.edit(`delete ${named(id)}`)));
    return item;
  }

  /** @param {string[]} ids */
  #entities(ids) {
    return ids.flatMap((id) => (this.drawing?.constraints.get(id)?.refs || []).map((ref) => ref.entity));
  }

  /** @param {string} key @param {string[]} ids what stays bright until it is let go */
  #pin(key, ids) {
    this.shown = key;
    this.wishes.pin(ids, this.#entities(ids));
  }

  /** @param {string} text @param {string} label @param {() => void} what */
  #button(text, label, what) {
    const button = element('button', '', text);
    button.type = 'button';
    button.setAttribute('aria-label', label);
    button.addEventListener('click', what);
    return button;
  }
}

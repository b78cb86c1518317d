// The buttons and keys that lead through the edits of a report.

import { element } from './words.js';

/**
 * @typedef {'freedom' | 'names' | 'marks'} Toggle
 * @typedef {{
 *   go: (place: number) => void,
 *   zoom: (factor: number) => void,
 *   fit: () => void,
 *   toggle: (what: Toggle, isOn: boolean) => void,
 * }} Wishes what the reader may want of the pictures
 */

/** @type {[Toggle, string, string, boolean][]} name, words, what it does, whether it is on at first */
const TOGGLES = [
  ['freedom', 'Freedom', 'Colour what is free, fully defined or contradictory (D)', false],
  ['names', 'Names', 'Show the names of entities (T)', false],
  ['marks', 'Marks', 'Show the signs of constraints (M)', true],
];
const TOGGLE_KEYS = { d: 'freedom', t: 'names', m: 'marks' };

export class StepBar {
  /** @param {import('./types').Step[]} steps @param {Wishes} wishes */
  constructor(steps, wishes) {
    this.steps = steps;
    this.wishes = wishes;
    this.place = -1;
    const last = steps.length - 1;
    this.root = element('div', 'step-bar');
    this.all = this.#button('All', 'All edits (A)', () => wishes.go(-1));
    this.first = this.#button('|◀', 'First edit (Home)', () => wishes.go(0));
    this.previous = this.#button('◀', 'Previous edit (,)', () => this.#by(-1));
    this.next = this.#button('▶', 'Next edit (.)', () => this.#by(1));
    this.last = this.#button('▶|', 'Last edit (End)', () => wishes.go(last));
    this.text = element('p', 'which');
    this.text.setAttribute('role', 'status');
    const steppers = element('div', 'tools steppers');
    steppers.setAttribute('role', 'toolbar');
    steppers.setAttribute('aria-label', 'Edits');
    steppers.append(this.all, this.first, this.previous, this.next, this.last);
    steppers.hidden = last < 1;
    steppers.addEventListener('keydown', (event) => {
      const by = { ArrowLeft: -1, ArrowRight: 1 }[event.key];
      if (!by) return;
      event.preventDefault();
      this.#by(by);
    });
    this.root.append(steppers, this.text, this.#looks());
    this.items = [...document.querySelectorAll('.edits > li')].map((item, i) => this.#item(/** @type {HTMLElement} */ (item), i));
  }

  /** @param {string} text @param {string} title @param {() => void} what */
  #button(text, title, what) {
    const button = element('button', '', text);
    button.type = 'button';
    button.title = title;
    button.setAttribute('aria-label', title);
    button.addEventListener('click', what);
    return button;
  }

  #looks() {
    const tools = element('div', 'tools');
    tools.setAttribute('role', 'toolbar');
    tools.setAttribute('aria-label', 'Pictures');
    /** @type {Map<string, HTMLButtonElement>} */
    this.toggles = new Map(TOGGLES.map(([name, words, title, isOn]) => {
      const button = this.#button(words, title, () => this.#toggle(name));
      button.setAttribute('aria-pressed', String(isOn));
      return [name, button];
    }));
    tools.append(...this.toggles.values(), this.#button('−', 'Zoom out (-)', () => this.wishes.zoom(1 / 1.5)),
                 this.#button('+', 'Zoom in (+)', () => this.wishes.zoom(1.5)), this.#button('Fit', 'Show all (0)', () => this.wishes.fit()));
    return tools;
  }

  /**
   * The page's list of edits leads to them.
   * @param {HTMLElement} item @param {number} place
   */
  #item(item, place) {
    const code = item.querySelector('code');
    if (!code || this.steps.length < 2) return item;
    const button = element('button', 'go');
    button.type = 'button';
    button.title = 'Show this edit';
    code.replaceWith(button);
    button.append(code);
    button.addEventListener('click', () => this.wishes.go(place));
    return item;
  }

  /** @param {number} by from the edit that is shown; from all of them, to an end */
  #by(by) {
    const last = this.steps.length - 1;
    if (this.place < 0) this.wishes.go(by > 0 ? 0 : last);
    else this.wishes.go(Math.max(0, Math.min(last, this.place + by)));
  }

  /** @param {Toggle} name */
  #toggle(name) {
    if (this.toggles?.get(name)?.disabled) return;
    const isOn = !this.isOn(name);
    this.toggles?.get(name)?.setAttribute('aria-pressed', String(isOn));
    this.wishes.toggle(name, isOn);
  }

  /** @param {Toggle} name */
  isOn(name) {
    return this.toggles?.get(name)?.getAttribute('aria-pressed') === 'true';
  }

  /** @param {number} place of an edit, from 0; all of them: -1 @param {boolean} tellsFreedom whether it is known there */
  show(place, tellsFreedom) {
    this.place = place;
    const freedom = this.toggles?.get('freedom');
    if (freedom) freedom.disabled = !tellsFreedom;
    const last = this.steps.length - 1;
    this.all.setAttribute('aria-pressed', String(place < 0));
    this.first.disabled = this.previous.disabled = place === 0;
    this.next.disabled = this.last.disabled = place === last;
    if (place < 0) this.text.textContent = `All ${this.steps.length} edits`;
    else this.text.replaceChildren(last > 0 ? `Edit ${place + 1} of ${last + 1}: ` : '', element('code', '', this.steps[place].text));
    this.items.forEach((item, i) => {
      item.classList.toggle('current', i === place);
      if (i === place) item.setAttribute('aria-current', 'step');
      else item.removeAttribute('aria-current');
    });
  }

  /** @param {string} words of what the keys have chosen */
  say(words) {
    this.text.textContent = words;
  }

  /**
   * Whether it meant something. The keys that scroll a page step only where the reader is at the pictures.
   * @param {string} key @param {boolean} isNear
   */
  keyed(key, isNear) {
    const isAlone = this.steps.length < 2, toggle = /** @type {Record<string, Toggle>} */ (TOGGLE_KEYS)[key];
    if (toggle) this.#toggle(toggle);
    else if (isAlone) return false;
    else if (key === '.') this.#by(1);
    else if (key === ',') this.#by(-1);
    else if (key === 'Home' && isNear) this.wishes.go(0);
    else if (key === 'End' && isNear) this.wishes.go(this.steps.length - 1);
    else if (key === 'a') this.wishes.go(-1);
    else return false;
    return true;
  }
}

// The line in which edits are typed, with completion from the verbs and the drawing's names.

import { byId, element } from './words.js';

/** @typedef {{word: string, note: string}} Offer */

const MOST_OFFERS = 12;

export class Line {
  /**
   * @param {import('./types').Language} language @param {() => import('./drawing.js').Drawing} drawing
   * @param {(text: string) => void} edit
   */
  constructor(language, drawing, edit) {
    this.language = language;
    this.drawing = drawing;
    this.edit = edit;
    this.input = /** @type {HTMLInputElement} */ (byId('edit'));
    this.list = byId('offers');
    /** @type {string[]} */
    this.earlier = [];
    this.at = 0;
    this.chosen = -1;
    /** @type {Offer[]} */
    this.offers = [];
    this.input.addEventListener('input', () => this.#offer());
    this.input.addEventListener('keydown', (event) => this.#key(event));
    this.input.addEventListener('blur', () => this.#close());
    byId('line').addEventListener('submit', (event) => {
      event.preventDefault();
      this.#submit();
    });
  }

  /** @param {string} text */
  put(text) {
    this.input.value = text;
    this.input.focus();
    this.#help();
  }

  #submit() {
    const text = this.input.value.trim();
    this.#close();
    if (!text) return;
    this.earlier.push(text);
    this.at = this.earlier.length;
    this.edit(text);
  }

  clear() {
    this.input.value = '';
    this.#help();
  }

  #help() {
    const verb = this.input.value.trim().split(/\s+/)[0];
    const known = this.language.verbs.find((each) => each.name === verb);
    byId('help').textContent = known ? `${known.usage}   e.g. ${known.example || known.name}` : '';
  }

  #word() {
    const before = this.input.value.slice(0, this.input.selectionStart || 0);
    return before.slice(before.lastIndexOf(' ') + 1);
  }

  /** @returns {Offer[]} */
  #candidates() {
    const words = this.input.value.slice(0, this.input.selectionStart || 0).split(' '), word = words[words.length - 1];
    if (words.length === 1) return this.language.verbs.map((verb) => ({ word: verb.name, note: verb.purpose }));
    if (words[0] === 'constrain' && words.length === 2)
      return this.language.kinds.map((kind) => ({ word: kind.name, note: kind.takes }));
    if (words[0] === 'help' || !word) return [];
    const names = [...this.drawing().entities.values()].map((e) => ({ word: e.id, note: e.type }));
    const constraints = words[0] === 'delete' || words[0] === 'set'
      ? [...this.drawing().constraints.values()].map((c) => ({ word: c.id, note: c.type })) : [];
    return [...constraints, ...names];
  }

  #offer() {
    this.#help();
    const word = this.#word();
    this.offers = word ? this.#candidates().filter((o) => o.word.startsWith(word) && o.word !== word).slice(0, MOST_OFFERS) : [];
    this.chosen = -1;
    this.#fill();
  }

  #fill() {
    this.list.replaceChildren(...this.offers.map((offer, i) => {
      const item = element('li', '', offer.word);
      item.id = `offer-${i}`;
      item.setAttribute('role', 'option');
      item.setAttribute('aria-selected', String(i === this.chosen));
      if (offer.note) item.append(element('small', '', offer.note));
      item.addEventListener('pointerdown', (event) => {
        event.preventDefault();
        this.#take(offer);
      });
      return item;
    }));
    this.list.hidden = this.offers.length === 0;
    this.input.setAttribute('aria-expanded', String(!this.list.hidden));
    if (this.chosen >= 0) this.input.setAttribute('aria-activedescendant', `offer-${this.chosen}`);
    else this.input.removeAttribute('aria-activedescendant');
  }

  #close() {
    this.offers = [];
    this.#fill();
  }

  /** @param {Offer} offer */
  #take(offer) {
    const at = this.input.selectionStart || 0, before = this.input.value.slice(0, at), after = this.input.value.slice(at);
    const start = before.slice(0, before.lastIndexOf(' ') + 1) + offer.word + ' ';
    this.input.value = start + after;
    this.input.setSelectionRange(start.length, start.length);
    this.#close();
    this.#help();
  }

  /** @param {KeyboardEvent} event */
  #key(event) {
    const isOpen = this.offers.length > 0;
    if (event.key === 'Tab' && isOpen && !event.shiftKey) {
      event.preventDefault();
      this.#take(this.offers[Math.max(0, this.chosen)]);
    } else if (event.key === 'Enter' && isOpen && this.chosen >= 0) {
      event.preventDefault();
      this.#take(this.offers[this.chosen]);
    } else if (event.key === 'Escape') {
      if (isOpen) this.#close();
      else byId('above').focus();
    } else if (event.key === 'ArrowDown' || event.key === 'ArrowUp') {
      event.preventDefault();
      this.#step(event.key === 'ArrowDown' ? 1 : -1, isOpen);
    }
  }

  /**
   * Through the offers, or the edits that were typed before.
   * @param {number} by @param {boolean} isOpen
   */
  #step(by, isOpen) {
    if (isOpen) {
      this.chosen = (this.chosen + by + this.offers.length) % this.offers.length;
      this.#fill();
      return;
    }
    this.at = Math.max(0, Math.min(this.earlier.length, this.at + by));
    this.input.value = this.earlier[this.at] || '';
    this.#help();
  }
}

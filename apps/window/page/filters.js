// Which constraints the list shows: by kind and by what the last edit did to them, with how many there are of each.

import { byId, element } from './words.js';

/** @typedef {import('./types').Constraint} Constraint */
/** @typedef {import('./types').Kind} Kind */

/** @type {Record<string, string>} */
const GROUPS = { deleted: 'deleted', changed: 'changed', 're-pointed': 're-pointed', added: 'added', restored: 'added' };
/** @type {[string, string][]} */
const FATES = [['kept', ''], ['changed', 'pointed'], ['re-pointed', 'pointed'], ['deleted', 'deleted'], ['added', 'added']];

export class Filters {
  /**
   * @param {Map<string, Kind>} kinds @param {(kind: Kind | undefined) => HTMLElement} signOf
   * @param {() => void} onChange
   */
  constructor(kinds, signOf, onChange) {
    this.kinds = kinds;
    this.signOf = signOf;
    this.onChange = onChange;
    /** @type {Set<string>} kinds of which one is enough; none: any */
    this.chosen = new Set();
    this.fate = '';  // empty: any
    /** @type {Map<string, string>} */
    this.fates = new Map();
    this.isTold = false;  // there was an edit
  }

  forget() {
    this.chosen.clear();
    this.takeFates(new Map(), false);
  }

  /** @param {Map<string, string>} fates by constraint; one without was kept @param {boolean} isTold */
  takeFates(fates, isTold) {
    this.fates = fates;
    this.isTold = isTold;
    if (!isTold) this.fate = '';
  }

  /** @param {string} id */
  groupOf(id) {
    return GROUPS[this.fates.get(id) || ''] || 'kept';
  }

  /**
   * Those that are shown; the buttons count what they would show.
   * @param {Constraint[]} all @returns {Constraint[]}
   */
  pass(all) {
    const ofFate = all.filter((c) => !this.fate || this.groupOf(c.id) === this.fate);
    const ofKind = all.filter((c) => !this.chosen.size || this.chosen.has(c.type));
    this.#fillKinds(ofFate);
    this.#fillFates(ofKind);
    return ofFate.filter((c) => !this.chosen.size || this.chosen.has(c.type));
  }

  /** @param {Constraint[]} all */
  #fillKinds(all) {
    /** @type {Map<string, number>} */
    const counts = new Map([...this.chosen].map((name) => [name, 0]));
    for (const c of all) counts.set(c.type, (counts.get(c.type) || 0) + 1);
    const names = [...this.kinds.keys()].filter((name) => counts.has(name));
    const buttons = names.map((name) => {
      const kind = this.kinds.get(name), count = counts.get(name) || 0;
      const button = this.#button('by-kind', name, this.chosen.has(name), `${kind?.label}: ${count}`, () => {
        if (!this.chosen.delete(name)) this.chosen.add(name);
      });
      button.append(this.signOf(kind), element('span', '', String(count)));
      return button;
    });
    refill('by-kind', buttons, names.length > 1);
  }

  /** @param {Constraint[]} all */
  #fillFates(all) {
    const buttons = FATES.map(([name, className]) => {
      const count = all.filter((c) => this.groupOf(c.id) === name).length;
      const button = this.#button(`by-fate chip ${className}`, name, this.fate === name, '', () => {
        this.fate = this.fate === name ? '' : name;
      });
      button.textContent = `${count} ${name}`;
      return button;
    });
    refill('by-fate', buttons, this.isTold);
  }

  /** @param {string} className @param {string} name @param {boolean} isOn @param {string} label @param {() => void} toggle */
  #button(className, name, isOn, label, toggle) {
    const button = element('button', className);
    button.type = 'button';
    button.dataset.name = name;
    button.setAttribute('aria-pressed', String(isOn));
    if (label) {
      button.title = label;
      button.setAttribute('aria-label', label);
    }
    button.addEventListener('click', () => {
      toggle();
      this.onChange();
    });
    return button;
  }
}

/**
 * The button that had the keyboard has it again.
 * @param {string} id @param {HTMLElement[]} buttons @param {boolean} isShown
 */
function refill(id, buttons, isShown) {
  const box = byId(id), held = box.contains(document.activeElement) ? /** @type {HTMLElement} */ (document.activeElement).dataset.name : undefined;
  box.hidden = !isShown;
  box.replaceChildren(...buttons);
  if (held) buttons.find((button) => button.dataset.name === held)?.focus();
}

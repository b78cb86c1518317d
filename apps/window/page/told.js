// The rows of a report: those of the edit that is shown, and those of the page's own tables.

import { signOf } from './panel.js';
import { element, kindInWords, placesOf, spoken } from './words.js';

/** @typedef {import('./types').Told} Fate */
/** @typedef {import('./pane.js').Pane} Pane */
/** @typedef {{constraints: string[], entities: string[]}} Subject */

const MOST_ROWS = 500;  // more are found in the page's own tables

/**
 * The ids that an attribute of the page lists.
 * @param {Element} owner @param {string} name
 */
const idsIn = (owner, name) => (owner.getAttribute(name) || '').split(' ').filter(Boolean).map(decoded);

/** @param {string} token */
function decoded(token) {
  try {
    return decodeURIComponent(token);
  } catch {
    return token;  // an id that is no text
  }
}

/** @param {string} id as an attribute lists it */
const tokenOf = (id) => id.replace(/[% ]/g, (sign) => (sign === '%' ? '%25' : '%20'));

export class Told {
  /** @param {Map<string, import('./types').Kind>} kinds */
  constructor(kinds) {
    this.kinds = kinds;
    this.root = element('section', 'told');
    this.root.setAttribute('aria-label', 'What this edit did');
    /** @type {Map<string, Element[]>} */
    this.rows = new Map();
    this.own = rowsIn(document);
    /** @type {Element[]} */
    this.hot = [];
    /** @type {Element[]} */
    this.pinned = [];
  }

  /**
   * @param {import('./types').Step | null} step none: all edits, which the page's own tables tell
   * @param {number} place @param {Pane[]} panes @param {boolean} isOneOfMany
   */
  show(step, place, panes, isOneOfMany) {
    this.root.hidden = !step || !isOneOfMany;
    this.root.replaceChildren();
    if (step && isOneOfMany) {
      this.root.append(element('h2', '', `What edit ${place + 1} did`));
      if (step.error) this.root.append(paragraph('refusal', 'Refused: ', step.error));
      for (const remark of step.remarks) this.root.append(element('p', 'remark', remark));
      this.#tables(step, panes);
    }
    this.rows = rowsIn(this.root);
  }

  /** @param {import('./types').Step} step @param {Pane[]} panes */
  #tables(step, panes) {
    const [before, after] = panes.map((pane) => pane.drawing);
    const table = (/** @type {string} */ name, /** @type {HTMLElement[]} */ rows, /** @type {number} */ count) => {
      const whole = element('table', name), body = element('tbody');
      body.append(...rows);
      whole.append(body);
      this.root.append(whole);
      if (count > rows.length) this.root.append(element('p', 'none', `and ${count - rows.length} more`));
    };
    const { constraints, entities } = step;
    if (constraints.length)
      table('constraints', constraints.slice(0, MOST_ROWS).map((told) =>
        this.#constraint(told, after.constraints.get(told.id) || before.constraints.get(told.id))), constraints.length);
    else if (!step.error) this.root.append(element('p', 'none', 'Every constraint was kept.'));
    if (entities.length)
      table('entities', entities.slice(0, MOST_ROWS).map((told) =>
        entityRow(told, after.entities.get(told.id) || before.entities.get(told.id))), entities.length);
    const parameters = parameterRows(before, after);
    if (parameters.length) table('entities', parameters, parameters.length);
  }

  /** @param {Fate} told @param {import('./types').Constraint | undefined} c */
  #constraint(told, c) {
    const kind = element('td', 'kind'), known = c && this.kinds.get(c.type);
    if (known && !known.isDimension) kind.append(signOf(known));
    kind.append(known?.label || c?.type || '');
    if (c?.name) kind.append(' ', element('i', '', c.name));
    if (c?.text) kind.append(' ', element('b', '', c.text));
    if (c?.formula) kind.append(' ', element('i', '', `= ${c.formula}`));
    const row = rowOf(`row ${told.class}`, told, kind, element('td', 'on', c ? placesOf(c) : ''));
    row.setAttribute('data-c', tokenOf(told.id));
    return row;
  }

  // --- Which of them belong to what is pointed at ---

  /** @param {EventTarget | null} target @returns {Subject | null} */
  subjectOf(target) {
    const owner = target instanceof Element ? target.closest('tr[data-c], tr[data-e], .ids span[data-e]') : null;
    if (!owner) return null;
    const constraints = idsIn(owner, 'data-c');
    return { constraints, entities: constraints.length ? [] : idsIn(owner, 'data-e') };
  }

  /** @param {Subject | null} subject @returns {Element[]} */
  #rowsOf(subject) {
    const keys = [...(subject?.constraints || []).map((id) => `c ${id}`), ...(subject?.entities || []).map((id) => `e ${id}`)];
    return keys.flatMap((key) => [...this.rows.get(key) || [], ...this.own.get(key) || []]);
  }

  /** @param {Subject | null} subject */
  light(subject) {
    for (const row of this.hot) row.classList.remove('hot');
    this.hot = this.#rowsOf(subject);
    for (const row of this.hot) row.classList.add('hot');
  }

  /** @param {Subject | null} subject */
  pin(subject) {
    for (const row of this.pinned) row.classList.remove('pinned');
    this.pinned = this.#rowsOf(subject);
    for (const row of this.pinned) row.classList.add('pinned');
  }
}

/**
 * Rows by what they tell of.
 * @param {Document | Element} root
 */
function rowsIn(root) {
  /** @type {Map<string, Element[]>} */
  const rows = new Map();
  const add = (/** @type {string} */ key, /** @type {Element} */ row) => rows.set(key, [...rows.get(key) || [], row]);
  for (const row of root.querySelectorAll('tr[data-c]')) for (const id of idsIn(row, 'data-c')) add(`c ${id}`, row);
  for (const row of root.querySelectorAll('tr.erow, .ids span[data-e]')) for (const id of idsIn(row, 'data-e')) add(`e ${id}`, row);
  return rows;
}

/** @param {string} className @param {string} head @param {string} text */
function paragraph(className, head, text) {
  const whole = element('p', className);
  whole.append(element('b', '', head), text);
  return whole;
}

/** @param {string} className @param {Fate} told @param {HTMLElement[]} cells between the id and the reason */
function rowOf(className, told, ...cells) {
  const row = element('tr', className), fate = element('td', 'fate');
  const icon = document.querySelector(`.chips .${told.class} .icon, .icons .${told.class} .icon`);
  if (icon) fate.append(icon.cloneNode(true));
  fate.append(element('span', '', told.fate));
  row.append(fate, element('td', 'id', told.id), ...cells, element('td', 'why', told.why));
  row.tabIndex = 0;
  return row;
}

/** @param {Fate} told @param {import('./types').Entity | undefined} e */
function entityRow(told, e) {
  const row = rowOf(`erow ${told.class}`, told, element('td', 'kind', e ? kindInWords(e) : ''));
  row.setAttribute('data-e', tokenOf(told.id));
  return row;
}

/**
 * Parameters that are not what they were.
 * @param {import('./drawing.js').Drawing} before @param {import('./drawing.js').Drawing} after
 */
function parameterRows(before, after) {
  const inWords = (/** @type {import('./types').Parameter} */ p) =>
    spoken(p.value) + (p.formula === String(p.value) ? '' : ` = ${p.formula}`);
  const was = new Map(before.parameters.map((each) => [each.name, each])), is = new Map(after.parameters.map((each) => [each.name, each]));
  return [...new Set([...was.keys(), ...is.keys()])].flatMap((name) => {
    const old = was.get(name), now = is.get(name);
    if (old && now && old.value === now.value && old.formula === now.formula) return [];
    const [fate, className] = !old ? ['added', 'added'] : !now ? ['deleted', 'deleted'] : ['changed', 'pointed'];
    const why = [old, now].flatMap((each) => (each ? [inWords(each)] : [])).join(' → ');
    return [rowOf(`prow ${className}`, { id: name, fate, class: className, why })];
  });
}

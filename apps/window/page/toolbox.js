// The tools in the page's rail: which there are, their buttons and keys, and which one is in the hand.

import { FIGURES } from './figures.js';
import { signOf } from './panel.js';
import { ConstrainTool, CornerTool, DrawTool, PickTool, endOf, onCurve, othersNear } from './tools.js';
import { byId, element, named } from './words.js';

/** @typedef {import('./window.js').Page} Page */
/** @typedef {import('./tools.js').Tool} Tool */

/**
 * @typedef {{name: string, label: string, key: string, icon: string, hint: string, option?: string,
 *            make: (page: Page) => Tool}} Kit
 */

/** @type {Kit[][]} */
const KITS = [
  [
    { name: 'line', label: 'Line', key: 'l', icon: 'M4 18L18 4', hint: 'Click two points; the next line goes on from there. Esc ends.',
      make: (page) => new DrawTool(page, FIGURES.line) },
    { name: 'circle', label: 'Circle', key: 'c', icon: 'M11 4a7 7 0 1 0 .01 0M11 11h.01', hint: 'Click the centre, then a point on the circle.',
      make: (page) => new DrawTool(page, FIGURES.circle) },
    { name: 'arc', label: 'Arc', key: 'a', icon: 'M4 17A13 13 0 0 1 18 5M4 17h.01M18 5h.01', hint: 'Click the centre, the start and the end; it runs counter-clockwise.',
      make: (page) => new DrawTool(page, FIGURES.arc) },
    { name: 'polyline', label: 'Polyline', key: 'y', icon: 'M3 17l5-9 5 6 6-10', hint: 'Click vertex after vertex; Enter or a double click ends.',
      make: (page) => new DrawTool(page, FIGURES.polyline) },
    { name: 'point', label: 'Point', key: 'o', icon: 'M11 5v12M5 11h12', hint: 'Click where the point is to be.',
      make: (page) => new DrawTool(page, FIGURES.point) },
  ],
  [
    { name: 'trim', label: 'Trim', key: 'x', icon: 'M3 11h6M13 11h6M11 3v16', hint: 'Point at the part to take out; what goes with it is struck out.',
      make: (page) => new PickTool(page, (pick) => `trim ${named(pick.id)} at ${onCurve(pick, page)} by ${othersNear(page, pick.entity, 0)}`) },
    { name: 'break', label: 'Break', key: 'b', icon: 'M3 11h6M13 11h6', hint: 'Click where the curve is to be cut in two.',
      make: (page) => new PickTool(page, (pick) => `break ${named(pick.id)} at ${onCurve(pick, page)}`) },
    { name: 'extend', label: 'Extend', key: 'e', icon: 'M3 11h10M10 8l3 3-3 3M18 4v14', hint: 'Point at the end that is to go on to the next curve.',
      make: (page) => new PickTool(page, (pick) => `extend ${named(pick.id)} ${endOf(pick)} to ${othersNear(page, pick.entity, 1)}`) },
    { name: 'fillet', label: 'Fillet', key: 'r', icon: 'M4 4v7a7 7 0 0 0 7 7h7', option: 'Radius', hint: 'Click two curves, or a corner of a polyline.',
      make: (page) => new CornerTool(page, 'fillet', 'radius') },
    { name: 'chamfer', label: 'Chamfer', key: 'h', icon: 'M4 4v8l6 6h8', option: 'Length', hint: 'Click two curves, or a corner of a polyline.',
      make: (page) => new CornerTool(page, 'chamfer', 'by') },
    { name: 'erase', label: 'Erase', key: 'd', icon: 'M5 5l12 12M17 5L5 17', hint: 'Point at what is to go; its constraints are struck out.',
      make: (page) => new PickTool(page, (pick) => `erase ${named(pick.id)}`) },
  ],
];

const UNPICKED = new Set(['internal', 'composite', 'g2_smooth']);  // kinds that belong to others

export class Toolbox {
  /** @param {Page} page @param {import('./types').Language} language */
  constructor(page, language) {
    this.page = page;
    /** @type {Map<string, HTMLButtonElement>} */
    this.buttons = new Map();
    /** @type {Map<string, Kit>} */
    this.kits = new Map();
    const rail = byId('rail');
    rail.append(this.#button({ name: 'pull', label: 'Pull', key: 'v', icon: 'M6 3l11 9-5 .7 3 5.3-2.4 1.3-2.9-5.4L6 17z', hint: '', make: () => { throw new Error(); } }, () => this.leave()));
    for (const group of KITS) {
      rail.append(element('hr'));
      for (const kit of group) rail.append(this.#button(kit, () => this.take(kit)));
    }
    rail.append(element('hr'));
    for (const kind of language.kinds) if (!UNPICKED.has(kind.name)) rail.append(this.#kindButton(kind));
    this.#mark('pull');
  }

  /** @param {Kit} kit @param {() => void} take */
  #button(kit, take) {
    const button = element('button'), label = element('span', '', kit.label);
    button.type = 'button';
    button.title = `${kit.label} (${kit.key.toUpperCase()})${kit.hint ? `: ${kit.hint}` : ''}`;
    button.setAttribute('aria-keyshortcuts', kit.key);
    const icon = document.createElementNS('http://www.w3.org/2000/svg', 'svg'), path = document.createElementNS('http://www.w3.org/2000/svg', 'path');
    icon.setAttribute('viewBox', '0 0 22 22');
    icon.setAttribute('aria-hidden', 'true');
    path.setAttribute('d', kit.icon);
    icon.append(path);
    button.append(icon, label);
    button.addEventListener('click', take);
    this.buttons.set(kit.name, button);
    this.kits.set(kit.key, kit);
    return button;
  }

  /** @param {import('./types').Kind} kind */
  #kindButton(kind) {
    const button = element('button', 'kind');
    button.type = 'button';
    button.title = `${kind.label}: ${kind.takes}`;
    button.setAttribute('aria-label', `constrain ${kind.label}`);
    button.append(signOf(kind));
    button.addEventListener('click', () => this.take({
      name: `constrain ${kind.name}`, label: kind.label, key: '', icon: '', hint: `${kind.label} takes ${kind.takes}. Click it; Enter takes what was clicked.`,
      make: (page) => new ConstrainTool(page, kind),
    }));
    this.buttons.set(`constrain ${kind.name}`, button);
    return button;
  }

  /** @param {string} name */
  #mark(name) {
    for (const [each, button] of this.buttons) button.setAttribute('aria-pressed', String(each === name));
  }

  /** @param {Kit} kit */
  take(kit) {
    this.page.tool?.leave();
    this.page.showOption(kit.option || '');
    this.page.hint(kit.hint);
    this.#mark(kit.name);
    byId('above').classList.add('aim');
    this.page.tool = kit.make(this.page);
    this.page.say(`${kit.label}: ${kit.hint}`);
  }

  leave() {
    this.page.tool?.leave();
    this.page.tool = null;
    this.page.showOption('');
    this.page.hint('');
    this.page.looking.light([]);
    this.#mark('pull');
    byId('above').classList.remove('aim');
  }

  /**
   * A key for a tool; whether there is one.
   * @param {string} key
   */
  keyed(key) {
    if (key === 'v') this.leave();
    else {
      const kit = this.kits.get(key);
      if (!kit) return false;
      this.take(kit);
    }
    return true;
  }
}

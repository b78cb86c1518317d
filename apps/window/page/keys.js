// What the keyboard does.

import { standsAlone } from './link.js';
import { byId, named, written } from './words.js';

const PAN_STEP = 60;           // pixels that an arrow key moves the view by
const ZOOM_STEP = 1.25;
const KEYS = `F fit · + − zoom · arrows pan · N P next and previous entity · Enter choose · J what is joined · W how it can move
Shift+arrows move it · Delete erase · Ctrl+C Ctrl+X Ctrl+V copy, cut, put down · Ctrl+D copy beside · Ctrl while pulling: no tie
Ctrl+Z undo · Ctrl+Shift+Z redo · Ctrl+S save · Ctrl+Shift+S save as · / type an edit · M marks · T names · Esc let go`;
const KEYS_ALONE = 'F fit · + − zoom · arrows pan · N P next and previous entity · Enter choose · M marks · T names · Esc let go';

export class Keys {
  /** @param {import('./window.js').Page} page @param {HTMLCanvasElement} canvas */
  constructor(page, canvas) {
    this.page = page;
    document.addEventListener('keydown', (event) => {
      if (!(event.ctrlKey || event.metaKey) || event.target instanceof HTMLInputElement) return;
      const what = this.#withControl(event.key.toLowerCase(), event);
      if (!what) return;
      event.preventDefault();
      what();
    });
    canvas.addEventListener('keydown', (event) => {
      if (event.ctrlKey || event.metaKey || event.altKey) return;
      if (event.key === ' ') this.page.hands.isSpaceDown = true;
      if (this.#keyed(event)) event.preventDefault();
    });
    canvas.addEventListener('keyup', (event) => {
      if (event.key === ' ') this.page.hands.isSpaceDown = false;
    });
  }

  /**
   * Texts of the page are copied as everywhere.
   * @param {string} key @param {KeyboardEvent} event @returns {(() => void) | null}
   */
  #withControl(key, event) {
    if (key === 's') return () => (event.shiftKey ? this.page.saveAs.ask() : void this.page.save());
    if (key === 'y' || (key === 'z' && event.shiftKey)) return () => void this.page.edit('redo');
    if (key === 'z') return () => void this.page.edit('undo');
    if (standsAlone || (event.target !== byId('above') && event.target !== document.body)) return null;
    switch (key) {
      case 'c': return () => this.page.clipboard.copy(false);
      case 'x': return () => this.page.clipboard.copy(true);
      case 'v': return () => this.page.clipboard.paste();
      case 'd': return () => void this.page.clipboard.duplicate();
      default: return null;
    }
  }

  /** @param {KeyboardEvent} event whether it meant something */
  #keyed(event) {
    if (standsAlone && ['Delete', 'Backspace', '/', ':'].includes(event.key)) return false;
    const arrow = { ArrowLeft: [1, 0], ArrowRight: [-1, 0], ArrowUp: [0, 1], ArrowDown: [0, -1] }[event.key];
    if (arrow && event.shiftKey && !standsAlone) return this.#nudge(arrow);
    if (arrow) return this.#look(() => this.page.view.pan(PAN_STEP * arrow[0], PAN_STEP * arrow[1]));
    const middle = /** @type {const} */ ([this.page.view.width / 2, this.page.view.height / 2]);
    switch (event.key) {
      case '+': case '=': return this.#look(() => this.page.view.zoom(...middle, ZOOM_STEP));
      case '-': return this.#look(() => this.page.view.zoom(...middle, 1 / ZOOM_STEP));
      case 'f': case '0': return this.#look(() => this.page.view.fit(this.page.drawing.box()));
      case 'n': return this.#step(1);
      case 'p': return this.#step(-1);
      case 'Enter': return this.page.tool ? this.page.tool.finish() === undefined : this.#toggleHot();
      case 'Escape': return this.page.escape();
      case 'Delete': case 'Backspace': return this.#erase();
      case 'w': return standsAlone ? false : this.#wiggle();
      case 'j': case 'J': return this.page.looking.chooseChain([...(this.page.scene.hot.size ? this.page.scene.hot : this.page.scene.selected)], event.shiftKey) === undefined;
      case '/': case ':': return this.page.line.put('') === undefined;
      case 'm': return this.#look(() => { this.page.scene.marks = !this.page.scene.marks; });
      case 't': return this.#look(() => { this.page.scene.names = !this.page.scene.names; });
      case '?': return this.page.say(standsAlone ? KEYS_ALONE : KEYS) === undefined;
      case ' ': return true;
      default: return !standsAlone && this.page.toolbox.keyed(event.key);
    }
  }

  /** @param {() => void} change of what is seen */
  #look(change) {
    change();
    this.page.moved();
    return true;
  }

  /**
   * The next entity.
   * @param {number} by
   */
  #step(by) {
    const ids = [...this.page.drawing.entities.keys()];
    if (!ids.length) return true;
    const [at] = this.page.scene.hot, i = ids.indexOf(at);
    const id = ids[(i + by + ids.length + (i < 0 && by < 0 ? 1 : 0)) % ids.length];
    this.page.looking.point(this.page.drawing.constraintsOn(id), [id]);
    this.page.say(this.page.looking.nameOf(id));
    return true;
  }

  #wiggle() {
    const [hot] = this.page.scene.hot, [chosen] = this.page.scene.selected;
    void this.page.wiggle.show(hot || chosen);
    return true;
  }

  #toggleHot() {
    const [id] = this.page.scene.hot;
    if (id) this.page.looking.choose([id], true, false);
    return true;
  }

  /** @param {number[]} arrow */
  #nudge(arrow) {
    const { selected } = this.page.scene;
    if (!selected.size) return this.page.say('choose something to move first: N steps through the entities, Enter chooses') === undefined;
    const step = this.page.view.step() * 10;
    const by = this.page.view.rounded([-arrow[0] * step, arrow[1] * step]);
    void this.page.edit(`drag ${[...selected].map(named).join(' ')} by ${written(by)}`);
    return true;
  }

  #erase() {
    const { selected } = this.page.scene;
    if (selected.size) void this.page.edit(`erase ${[...selected].map(named).join(' ')}`);
    return true;
  }
}

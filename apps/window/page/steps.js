// A report's pictures, alive: before and after all edits, or any one of them, with the rows that tell what became of what.

import { Fingers } from './fingers.js';
import { heldBy } from './held.js';
import { StepBar } from './stepbar.js';
import { Pane } from './pane.js';
import { constraintInWords } from './panel.js';
import { readGlyphs } from './marks.js';
import { Told } from './told.js';
import { View } from './view.js';
import { boundsOf } from './shapes.js';
import { byId, element, entityInWords } from './words.js';

/** @typedef {import('./types').Point} Point */
/** @typedef {{constraints: string[], entities: string[]}} Subject what is pointed at */

const ZOOM_STEP = 1.5;
const PAN_SHARE = 1 / 12;  // of the width, that an arrow key moves the view by
const CROWD = 1500;        // constraints whose signs would cover the drawing
const SHARP_DELAY = 150;   // milliseconds without a pan until a large drawing is drawn anew
const KEYS = 'Drag to pan, Ctrl + wheel or two fingers to zoom, double click for a closer look; click a row to find it. Comma and full stop '
  + 'step through the edits, in pictures and buttons Home and End go to the first and the last; A shows all, D what is free, T names, M marks.';
const KEYS_OF_ONE = 'Drag to pan, Ctrl + wheel or two fingers to zoom, double click for a closer look; click a row to find it. D shows what is free, T names, M marks.';

class Steps {
  /** @param {import('./types').StepsData} data */
  constructor(data) {
    this.data = data;
    this.kinds = new Map(data.language.kinds.map((kind) => [kind.name, kind]));
    this.freedom = wholeFreedom(data.freedom);
    this.view = new View();
    this.panes = [new Pane('Before', data, this.view, this.kinds), new Pane('After', data, this.view, this.kinds)];
    this.place = -1;   // of the edit that is shown, from 0; all of them: -1
    /** @type {Subject | null} */
    this.pinned = null;
    this.lit = '';
    /** @type {import('./shapes.js').Box | null} */
    this.home = null;
    this.isFitted = true;  // the view shows all
    this.isCrowd = data.before.constraints.length > CROWD;
    this.isPainting = false;
    this.paintsAll = false;
    this.section = /** @type {HTMLElement} */ (document.querySelector('section.pictures'));
    this.tipBox = byId('tip');
    this.bar = new StepBar(data.steps, {
      go: (place) => this.go(place),
      zoom: (factor) => this.zoom(factor),
      fit: () => this.fit(),
      toggle: (what, isOn) => this.toggle(what, isOn),
    });
    this.told = new Told(this.kinds);
    this.#build();
    this.#watch();
    this.#pointers();
    this.#keys();
  }

  get #after() { return this.panes[1]; }

  #build() {
    const still = /** @type {HTMLElement} */ (this.section.querySelector('.panes'));
    still.classList.add('still');
    const stages = element('div', 'panes moving');
    const changes = this.data.steps.some((step) => step.change);
    this.section.classList.toggle('one', !changes);
    if (!changes) this.panes[0].figure.hidden = true;
    stages.append(...this.panes.map((pane) => pane.figure));
    this.section.prepend(this.bar.root);
    still.before(stages);
    this.section.append(this.told.root);
    this.#explain();
    const leftOut = this.section.querySelector('.left-out');
    leftOut?.remove();
    if (this.isCrowd) this.section.querySelector('.legend')?.prepend(element('span', '', 'the signs of what was kept come with a closer look'));
    const keys = this.section.querySelector('.keys'), freedoms = element('span', 'freedoms');
    freedoms.append(element('span', 'free', 'free'), element('span', 'defined', 'fully defined'), element('span', 'clash', 'contradictory'));
    if (keys) keys.textContent = this.data.steps.length > 1 ? KEYS : KEYS_OF_ONE;
    keys?.before(freedoms);
    document.body.classList.add('live', 'stepping');
    if (this.data.steps.length > 1)
      for (const head of document.querySelectorAll('main > section[id] > h2')) head.textContent += ' after all edits';
    this.home = this.#box();
    const box = this.home, isWide = this.section.classList.contains('wide'), isOne = !changes;
    const share = box ? (box[3] - box[1]) / (box[2] - box[0] || 1) + 0.12 : 0.6;
    const highest = isWide || isOne ? 0.5 : 1.1, lowest = isWide ? 0.12 : isOne ? 0.3 : 0.45;
    for (const { stage } of this.panes) stage.style.aspectRatio = `1 / ${Math.min(highest, Math.max(lowest, share))}`;
  }

  /** Lines that edits on the way have and all of them together have not. */
  #explain() {
    const legend = this.section.querySelector('.legend'), svg = 'http://www.w3.org/2000/svg';
    const fates = new Set(this.data.steps.flatMap((step) => step.entities.map((each) => each.class)));
    const lines = [['erased', 'e erased'], ['edited', 'e edited'], ['created', 'e created'], ['followed', 'e followed']]
      .filter(([fate]) => fates.has(fate));
    if (this.data.steps.some((step) => step.change)) lines.push(['where it was', 'ghost']);
    for (const [words, className] of lines) {
      if (!legend || legend.querySelector(`.${className.replace(' ', '.')}`)) continue;
      const item = element('span'), swatch = document.createElementNS(svg, 'svg'), path = document.createElementNS(svg, 'path');
      swatch.setAttribute('class', 'swatch');
      swatch.setAttribute('viewBox', '0 0 28 8');
      swatch.setAttribute('aria-hidden', 'true');
      path.setAttribute('class', className);
      path.setAttribute('d', 'M1 4H27');
      swatch.append(path);
      item.append(swatch, words);
      legend.insertBefore(item, legend.querySelector('.keys'));
    }
  }

  /** The drawing's box before and after all edits. */
  #box() {
    const boxes = this.panes.map((pane, i) => {
      pane.replay.goTo(i * this.data.steps.length);
      return pane.drawing.box();
    }).filter((box) => box !== null);
    if (!boxes.length) return null;
    return /** @type {import('./shapes.js').Box} */ ([0, 1, 2, 3].map((i) =>
      (i < 2 ? Math.min : Math.max)(...boxes.map((box) => /** @type {number[]} */ (box)[i]))));
  }

  // --- Which edit is shown ---

  /** @param {number} place of an edit, from 0; all of them: -1 */
  go(place) {
    const { steps } = this.data, last = steps.length - 1;
    this.place = Math.max(last > 0 ? -1 : 0, Math.min(last, place));
    const isAll = this.place < 0, step = isAll ? null : steps[this.place];
    const { constraints, entities } = step || this.data.whole;
    const [from, to] = isAll ? [0, steps.length] : [this.place, this.place + 1];
    [from, to].forEach((state, i) => this.panes[i].show(state, constraints, entities, this.freedom[state]));
    const [before, after] = this.panes;
    after.scene.ghosts = entities.flatMap(({ id }) => {
      const was = before.drawing.entities.get(id);
      return was && JSON.stringify(was) !== JSON.stringify(after.drawing.entities.get(id)) ? [was] : [];
    });
    this.told.show(step, this.place, this.panes, last > 0);
    this.bar.show(this.place, this.panes.some((pane) => pane.scene.freedom !== null));
    this.lit = '';
    this.#light(null);
    this.#filter();
    document.body.dataset.step = isAll ? 'all' : String(this.place + 1);
  }

  // --- What is pointed at ---

  /** @param {Subject | null} subject */
  #light(subject) {
    const shown = subject || this.pinned;
    const key = JSON.stringify(shown);
    if (key === this.lit) return;
    this.lit = key;
    const entities = this.#entitiesOf(shown);
    for (const { drawing, scene } of this.panes) {
      scene.hot = entities;
      scene.hotMarks = new Set(shown?.constraints.length ? shown.constraints : [...entities].flatMap((id) => drawing.constraintsOn(id)));
    }
    this.told.light(shown);
    this.#paintSoon(true);
  }

  /**
   * With those that a constraint holds on, before or after.
   * @param {Subject | null} subject
   */
  #entitiesOf(subject) {
    const entities = new Set(subject?.entities);
    for (const { drawing } of this.panes)
      for (const id of subject?.constraints || []) for (const { entity } of drawing.constraints.get(id)?.refs || []) entities.add(entity);
    return entities;
  }

  /** @param {Subject | null} subject */
  #pin(subject) {
    this.pinned = subject;
    this.told.pin(subject);
    this.#light(null);
  }

  /**
   * @param {Subject} subject @param {Pane} pane
   */
  #inWords({ constraints, entities }, pane) {
    const lines = constraints.map((id) => {
      const constraint = pane.drawing.constraints.get(id);
      return constraint ? constraintInWords(constraint, this.kinds.get(constraint.type)) : id;
    });
    for (const id of entities) {
      const e = pane.drawing.entities.get(id), free = pane.scene.freedom?.entities?.[id]?.words;
      lines.push(e ? `${id}: ${entityInWords(e)}` : id, ...(free ? [free] : []));
    }
    const step = this.place < 0 ? this.data.whole : this.data.steps[this.place];
    for (const { id, fate, why } of [...step.constraints, ...step.entities])
      if (constraints.includes(id) || entities.includes(id)) lines.push(fate + (why ? `: ${why}` : ''));
    return lines.join('\n');
  }

  /** @param {string} text empty: none @param {{clientX: number, clientY: number}} [at] */
  #tip(text, at) {
    const tip = this.tipBox;
    tip.hidden = !text;
    if (!text || !at) return;
    tip.textContent = text;
    tip.style.left = `${Math.max(8, Math.min(at.clientX + 14, innerWidth - tip.offsetWidth - 8))}px`;
    const isLow = at.clientY + 18 + tip.offsetHeight > innerHeight;
    tip.style.top = `${isLow ? at.clientY - tip.offsetHeight - 12 : at.clientY + 18}px`;
  }

  /** @param {Subject} subject */
  #bringIntoView(subject) {
    const ids = this.#entitiesOf(subject), box = [Infinity, Infinity, -Infinity, -Infinity];
    for (const { drawing } of this.panes) {
      for (const id of ids) {
        const e = drawing.entities.get(id);
        if (!e || e.type === 'xline' || e.type === 'ray') continue;
        boundsOf(e).forEach((side, i) => { box[i] = i < 2 ? Math.min(box[i], side) : Math.max(box[i], side); });
      }
    }
    if (box[0] > box[2]) return;
    this.fit();
    const { view } = this, home = view.scale;
    const room = 0.5 * Math.min(view.width / (box[2] - box[0] || 1e-9), view.height / (box[3] - box[1] || 1e-9));
    this.isFitted = false;
    view.scale = Math.max(home, Math.min(8 * home, room));
    view.x = (box[0] + box[2]) / 2;
    view.y = (box[1] + box[3]) / 2;
    this.#moved();
  }

  // --- The view ---

  fit() {
    this.view.fit(this.home);
    this.isFitted = true;
    this.#moved();
  }

  /** @param {number} factor @param {Point} [at] on the screen */
  zoom(factor, at = [this.view.width / 2, this.view.height / 2]) {
    this.view.zoom(...at, factor);
    this.isFitted = false;
    this.#moved();
  }

  /** @param {number} dx @param {number} dy in pixels */
  #pan(dx, dy) {
    this.view.pan(dx, dy);
    this.isFitted = false;
    this.#moved();
  }

  #moved() {
    this.#tip('');
    const shifted = this.panes.map((pane) => pane.painter.shift());
    if (!shifted.every(Boolean)) return this.#paintSoon(true);
    clearTimeout(this.sharpTimer);
    this.sharpTimer = setTimeout(() => this.#paintSoon(true), SHARP_DELAY);
    this.#paintSoon(false);
  }

  /** @param {'freedom' | 'names' | 'marks'} what @param {boolean} isOn */
  toggle(what, isOn) {
    for (const pane of this.panes) {
      if (what === 'freedom') pane.colour(!isOn);
      else pane.scene[what] = isOn;
    }
    this.section.classList.toggle('tells-freedom', this.bar.isOn('freedom'));
    this.#paintSoon(true);
  }

  /** @param {boolean} all not only what follows the pointer */
  #paintSoon(all) {
    this.paintsAll = this.paintsAll || all;
    if (this.isPainting) return;
    this.isPainting = true;
    requestAnimationFrame(() => {
      this.isPainting = false;
      for (const pane of this.panes) if (!pane.figure.hidden) pane.paint(this.paintsAll);
      this.paintsAll = false;
      document.body.dataset.painted = String(Number(document.body.dataset.painted || 0) + 1);
    });
  }

  #watch() {
    const { stage } = this.#after;
    new ResizeObserver(() => {
      if (!stage.clientWidth) return;  // on paper
      for (const pane of this.panes) pane.painter.resize(stage.clientWidth, stage.clientHeight);
      if (this.isFitted) this.view.fit(this.home);
      this.#paintSoon(true);
    }).observe(stage);
    matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => {
      for (const pane of this.panes) pane.painter.readColours();
      this.#paintSoon(true);
    });
    for (const box of document.querySelectorAll('input.filter')) box.addEventListener('change', () => this.#filter());
  }

  /** What the boxes above the page hide has no marks; nor has, in a crowd that is seen whole, what was kept. */
  #filter() {
    const hidden = new Set([...document.querySelectorAll('input.filter')]
      .filter((box) => !(/** @type {HTMLInputElement} */ (box).checked)).map((box) => box.id.replace('show-', '')));
    const { constraints } = this.place < 0 ? this.data.whole : this.data.steps[this.place];
    const classes = new Map(constraints.map((each) => [each.id, each.class]));
    for (const { scene } of this.panes) {
      const leavesOut = (/** @type {string} */ id) => this.isCrowd && this.isFitted && !classes.has(id) && !scene.hotMarks.has(id);
      scene.hides = (id) => hidden.has(classes.get(id) || 'kept') || leavesOut(id);
    }
    this.#paintSoon(true);
  }

  // --- Pointer and keys ---

  #pointers() {
    for (const pane of this.panes) this.#pointersOf(pane);
    document.addEventListener('pointerover', (event) => this.#light(this.told.subjectOf(event.target)));
    document.addEventListener('focusin', (event) => this.#light(this.told.subjectOf(event.target)));
    document.addEventListener('focusout', () => this.#light(null));
    document.addEventListener('click', (event) => {
      const subject = this.told.subjectOf(event.target);
      if (!subject) return;
      this.#pin(subject);
      this.#bringIntoView(subject);
    });
  }

  /** @param {Pane} pane */
  #pointersOf(pane) {
    const { canvas } = pane, fingers = new Fingers();
    /** @type {PointerEvent | null} */
    let last = null;
    let far = 0;
    const at = (/** @type {MouseEvent} */ event) => /** @type {Point} */ ([event.offsetX, event.offsetY]);
    const subjectAt = (/** @type {MouseEvent} */ event) => {
      const { constraint, entity } = pane.under(at(event));
      return constraint ? { constraints: [constraint], entities: [] } : entity ? { constraints: [], entities: [entity] } : null;
    };
    canvas.addEventListener('pointerdown', (event) => {
      far = 0;
      if (event.pointerType === 'touch') fingers.put(event.pointerId, at(event));
      else if (event.button === 0) last = event;
    });
    // One finger scrolls the page, two are the picture's.
    canvas.addEventListener('touchstart', (event) => {
      if (event.touches.length > 1) event.preventDefault();
    }, { passive: false });
    canvas.addEventListener('pointermove', (event) => {
      if (fingers.spread(event.pointerId, at(event), this.view)) {
        far = Infinity;
        this.isFitted = false;
        return this.#moved();
      }
      if (fingers.places.has(event.pointerId)) fingers.put(event.pointerId, at(event));
      if (!last) {
        const subject = subjectAt(event);
        this.#light(subject);
        return this.#tip(subject ? this.#inWords(subject, pane) : '', event);
      }
      far += Math.abs(event.clientX - last.clientX) + Math.abs(event.clientY - last.clientY);
      if (far > 4 && !canvas.hasPointerCapture(event.pointerId)) canvas.setPointerCapture(event.pointerId);
      this.#pan(event.clientX - last.clientX, event.clientY - last.clientY);
      last = event;
    });
    for (const name of /** @type {const} */ (['pointerup', 'pointercancel'])) canvas.addEventListener(name, (event) => {
      last = null;
      fingers.lift(event.pointerId);
    });
    canvas.addEventListener('pointerleave', () => this.#tip(''));
    canvas.addEventListener('click', (event) => {
      if (far <= 4) this.#pin(subjectAt(event));
    });
    canvas.addEventListener('wheel', (event) => {
      if (!event.ctrlKey && !event.metaKey) return;
      event.preventDefault();
      this.zoom(Math.exp(-Math.max(-60, Math.min(60, event.deltaY)) * 0.006), at(event));
    }, { passive: false });
    canvas.addEventListener('dblclick', (event) => this.zoom(event.shiftKey ? 0.5 : 2, at(event)));
    canvas.addEventListener('keydown', (event) => {
      if (event.ctrlKey || event.metaKey || event.altKey || !this.#looked(event.key, pane)) return;
      event.preventDefault();
      event.stopPropagation();
    });
  }

  /** @param {string} key in a picture @param {Pane} pane whether it meant something */
  #looked(key, pane) {
    const arrow = { ArrowLeft: [1, 0], ArrowRight: [-1, 0], ArrowUp: [0, 1], ArrowDown: [0, -1] }[key];
    if (arrow) {
      const step = this.view.width * PAN_SHARE;
      this.#pan(step * arrow[0], step * arrow[1]);
      return true;
    }
    switch (key) {
      case '+': case '=': this.zoom(ZOOM_STEP); return true;
      case '-': this.zoom(1 / ZOOM_STEP); return true;
      case '0': case 'f': this.fit(); return true;
      case 'n': this.#next(1, pane); return true;
      case 'p': this.#next(-1, pane); return true;
      default: return false;
    }
  }

  /** @param {number} by @param {Pane} pane */
  #next(by, pane) {
    const ids = [...pane.drawing.entities.keys()];
    if (!ids.length) return;
    const [hot] = pane.scene.hot, i = ids.indexOf(hot);
    const subject = { constraints: [], entities: [ids[(i + by + ids.length + (i < 0 && by < 0 ? 1 : 0)) % ids.length]] };
    this.#pin(subject);
    this.bar.say(this.#inWords(subject, pane).replaceAll('\n', ', '));
  }

  #keys() {
    document.addEventListener('keydown', (event) => {
      const { target } = event;
      if (event.ctrlKey || event.metaKey || event.altKey || (target instanceof HTMLInputElement && target.type !== 'checkbox')) return;
      const row = target instanceof Element ? this.told.subjectOf(target) : null;
      if (row && (event.key === 'Enter' || event.key === ' ')) {
        /** @type {HTMLElement} */ (target).click();
      } else if (event.key === 'Escape') {
        this.#pin(null);
        this.fit();
      } else if (!this.bar.keyed(event.key, target instanceof Element && Boolean(target.closest('.step-bar, .moving, .edits')))) {
        return;
      }
      event.preventDefault();
    });
  }
}

/**
 * What is told of each state, with what is as it was in the one before.
 * @param {(import('./types').Freedom | null)[]} states
 */
function wholeFreedom(states) {
  /** @type {import('./types').Freedom['entities']} */
  let entities = {};
  return states.map((told) => {
    if (!told || told.error) return null;
    entities = { ...entities, ...told.entities };
    return { ...told, entities };
  });
}

async function start() {
  readGlyphs(/** @type {Element} */ (document.querySelector('svg.sheet')));
  const steps = new Steps(await heldBy(byId('steps-data')));
  Object.assign(window, { holdfast: steps });  // for the curious, at the console, and for tests
  steps.go(steps.data.steps.length > 1 ? -1 : 0);
  document.body.dataset.ready = 'yes';
}

// Without it the page is what it is without scripts.
start().catch((failure) => console.error(failure));

// One picture of a report: the drawing before or after an edit, with what became of it.

import { Painter } from './painter.js';
import { picksAt } from './picking.js';
import { Replay } from './replay.js';
import { counted, element } from './words.js';

/** @typedef {import('./types').Point} Point */
/** @typedef {import('./types').Told} Told */

export class Pane {
  /**
   * @param {string} name @param {import('./types').StepsData} data @param {import('./view.js').View} view the same in all panes
   * @param {Map<string, import('./types').Kind>} kinds
   */
  constructor(name, data, view, kinds) {
    this.name = name;
    this.view = view;
    this.replay = new Replay(data.before, data.steps.map((step) => step.change));
    const below = element('canvas'), above = element('canvas');
    above.tabIndex = 0;
    above.setAttribute('role', 'img');
    this.canvas = above;
    this.stage = element('div', 'stage');
    this.stage.append(below, above);
    this.counts = element('span');
    this.figure = element('figure');
    this.heading = element('figcaption');
    this.heading.append(element('h2', '', name), this.counts);
    this.figure.append(this.heading, this.stage);
    this.painter = new Painter(below, above, view, kinds);
    this.painter.takeAll(this.drawing);
    /** @type {import('./painter.js').Scene} */
    this.scene = {
      freedom: null, hot: new Set(), hotMarks: new Set(), selected: new Set(), trial: null, fates: new Map(), gone: new Map(),
      goneEntities: new Map(), names: false, marks: true, rubber: null, sketch: [], snap: null, box: null, cut: new Set(), wiggle: [],
      pinned: { marks: new Set(), entities: new Set() }, fateInks: true, ghosts: [], entityFates: new Map(),
    };
  }

  get drawing() { return this.replay.drawing; }

  /**
   * @param {number} state @param {Told[]} constraints @param {Told[]} entities
   * @param {import('./types').Freedom | null} freedom
   */
  show(state, constraints, entities, freedom) {
    const { scene, drawing, painter } = this, was = [...scene.entityFates?.keys() || []];
    const touched = this.replay.goTo(state);
    scene.fates = new Map(constraints.filter(({ id }) => drawing.constraints.has(id)).map(({ id, fate }) => [id, fate]));
    scene.entityFates = new Map(entities.filter(({ id }) => drawing.entities.has(id)).map(({ id, fate }) => [id, fate]));
    this.#takeFreedom(freedom);
    painter.touch([...touched, ...was, ...scene.entityFates.keys()].filter((id) => drawing.entities.has(id) || painter.chunkOf.has(id)));
    const all = [...drawing.constraints.values()].filter((c) => c.type !== 'internal').length;
    this.counts.textContent = `${counted(drawing.entities.size, 'entity')}, ${counted(all, 'constraint')}`;
    this.canvas.setAttribute('aria-label', `${this.name}: ${this.counts.textContent}. Arrows pan, plus and minus zoom, N and P step through entities.`);
  }

  /** @param {import('./types').Freedom | null} freedom */
  #takeFreedom(freedom) {
    const { scene, drawing } = this, isOther = freedom !== scene.freedom;
    scene.freedom = freedom;
    scene.clashes = scene.fateInks ? [] : [...(freedom?.conflicts || []).flat(), ...(freedom?.broken || []).map((each) => each.id)];
    scene.clashing = new Set(scene.clashes.flatMap((id) => (drawing.constraints.get(id)?.refs || []).map((ref) => ref.entity)));
    if (isOther && !scene.fateInks) this.painter.touchAll();
  }

  /** @param {boolean} inFates entities in the colours of their fates; else of their freedom */
  colour(inFates) {
    this.scene.fateInks = inFates;
    this.#takeFreedom(this.scene.freedom);
    this.painter.touchAll();
  }

  /** @param {boolean} all not only what follows the pointer */
  paint(all) {
    if (all) this.painter.paintBelow(this.drawing, this.scene);
    this.painter.paintAbove(this.drawing, this.scene);
  }

  /**
   * What lies under a point of the screen: the mark of a constraint, or an entity.
   * @param {Point} at @returns {{constraint?: string, entity?: string}}
   */
  under([x, y]) {
    const mark = this.painter.placed.find((each) => Math.abs(each.x - x) * 2 <= each.w + 2 && Math.abs(each.y - y) * 2 <= each.h + 2);
    if (mark && (!mark.mark.isSpot || this.scene.fates.has(mark.mark.id))) return { constraint: mark.mark.id };
    const [pick] = picksAt(this.drawing.entities.values(), this.view, this.view.toDrawing(x, y), this.scene.hot);
    return pick ? { entity: pick.id } : {};
  }
}

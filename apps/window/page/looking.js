// Looking and choosing: what is under the pointer, what is bright, what is chosen.

import { chainOf } from './chain.js';
import { constraintInWords } from './panel.js';
import { byId, counted, entityInWords } from './words.js';

/** @typedef {import('./types').Point} Point */
/** @typedef {import('./picking.js').Pick} Pick */

export class Looking {
  /** @param {import('./window.js').Page} page */
  constructor(page) {
    this.page = page;
  }

  /**
   * What the pointer is over.
   * @param {Pick | null} pick @param {Point} [p] @param {Point} [at] on the screen
   */
  look(pick, p, at) {
    const { scene } = this.page;
    if (p) this.page.pointer = p;
    if (this.page.tool && p && at) return this.page.tool.look(pick, p, at);
    const mark = at && !pick?.place ? this.markAt(at) : null;
    const constraint = mark && (this.page.drawing.constraints.get(mark) || scene.gone.get(mark));
    const hot = constraint ? constraint.refs.map((ref) => ref.entity) : pick ? [pick.id] : [];
    const hotMarks = constraint ? [constraint.id] : pick ? this.page.drawing.constraintsOn(pick.id) : [];
    byId('above').classList.toggle('grab', Boolean(pick && !pick.entity.fixed));
    if (!this.#light(hot, hotMarks)) return;
    if (constraint && at) this.page.tip(constraintInWords(constraint, this.page.kinds.get(constraint.type)), at);
    else if (pick && at) this.page.tip(this.#inWords(pick), at);
    else this.page.tip('');
    scene.snap = null;
  }

  /** @param {Pick} pick */
  #inWords(pick) {
    const freedom = this.page.scene.freedom?.entities?.[pick.id]?.words;
    const words = `${pick.id}: ${entityInWords(pick.entity)}`;
    return freedom ? `${words}\n${freedom}` : words;
  }

  /** @param {string[]} entities @param {string[]} marks @param {boolean} [isFromList] whether anything changed */
  #light(entities, marks, isFromList) {
    const { scene } = this.page;
    const key = [...entities, '', ...marks].join('\n');
    if (key === this.page.lit) return false;
    this.page.lit = key;
    scene.hot = new Set(entities);
    scene.hotMarks = new Set(marks);
    this.page.panel.light(scene.hotMarks, !isFromList);
    this.page.paintSoon(true);
    return true;
  }

  /**
   * From a list.
   * @param {string[]} marks @param {string[]} entities
   */
  point(marks, entities) {
    this.#light(entities, marks, true);
  }

  /**
   * What stays bright whatever is pointed at.
   * @param {string[]} marks @param {string[]} entities
   */
  pin(marks, entities) {
    this.page.scene.pinned = { marks: new Set(marks), entities: new Set(entities) };
    this.page.paintSoon(true);
  }

  /**
   * The constraint whose mark is at a point of the screen.
   * @param {Point} at
   */
  markAt([x, y]) {
    const found = this.page.painter.placed.find((each) => Math.abs(each.x - x) * 2 <= each.w + 2 && Math.abs(each.y - y) * 2 <= each.h + 2);
    return found && !found.mark.isSpot ? found.mark.id : null;
  }

  /** @param {Pick | null} pick @param {Point} p @param {boolean} adds */
  click(pick, p, adds) {
    if (this.page.tool) return this.page.tool.click(pick, p);
    const mark = pick?.place ? null : this.markAt(this.page.view.toScreen(p));
    const constraint = mark ? this.page.drawing.constraints.get(mark) : undefined;
    if (constraint) return this.choose(constraint.refs.map((ref) => ref.entity), adds, true);
    this.choose(pick ? [pick.id] : [], adds, false);
  }

  /** @param {string[]} ids @param {boolean} adds @param {boolean} isSet that are chosen, not toggled */
  choose(ids, adds, isSet) {
    const { scene } = this.page;
    scene.box = null;
    if (!adds) scene.selected = new Set(ids);
    else for (const id of ids) if (!isSet && scene.selected.has(id)) scene.selected.delete(id); else scene.selected.add(id);
    this.page.panel.selected = scene.selected;
    this.page.panel.fillConstraints();
    if (ids.length === 1) this.page.say(this.nameOf(ids[0]));
    this.page.paintSoon(true);
  }

  /** @param {string} id */
  nameOf(id) {
    const e = this.page.drawing.entities.get(id), words = this.page.scene.freedom?.entities?.[id]?.words;
    return e ? `${id}: ${entityInWords(e)}${words ? `, ${words}` : ''}, ${counted(this.page.drawing.constraintsOn(id).length, 'constraint')}` : id;
  }

  /**
   * What a tool is pointed at.
   * @param {string[]} entities
   */
  light(entities) {
    this.#light(entities, []);
  }

  /**
   * A double click: on a dimension, or on a curve, which takes all that is joined to it.
   * @param {Pick | null} pick @param {Point} at on the screen @param {boolean} adds
   */
  open(pick, at, adds) {
    if (this.page.tool) return this.page.tool.finish();
    const mark = pick?.place ? null : this.markAt(at);
    if (mark && this.page.kinds.get(this.page.drawing.constraints.get(mark)?.type || '')?.isDimension) return this.page.openDimension(mark);
    if (pick && !mark) this.chooseChain([pick.id], adds);
  }

  /** @param {string[]} ids @param {boolean} adds */
  chooseChain(ids, adds) {
    if (!ids.length) return this.page.say('point at a curve, or choose one: J takes all that are joined to it');
    const chain = chainOf(this.page.drawing, ids);
    this.choose(chain, adds, true);
    this.page.say(`${counted(chain.length, 'entity')} joined end to end`);
  }
}

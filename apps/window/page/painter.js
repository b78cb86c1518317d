// Puts the drawing on the screen: below, what stays while the pointer moves; above, what follows it.

import { motionsOf, paintArrows } from './arrows.js';
import { around, boundsOf, gripsOf, meets, trace } from './shapes.js';
import { drawMark, marksOf, place } from './marks.js';
import { Pens } from './pens.js';

/** @typedef {import('./types').Entity} Entity */
/** @typedef {import('./types').Point} Point */
/** @typedef {import('./drawing.js').Drawing} Drawing */
/**
 * What is shown beside the drawing itself.
 * @typedef {{
 *   freedom: import('./types').Freedom | null,
 *   hot: Set<string>, hotMarks: Set<string>, selected: Set<string>,
 *   trial: import('./types').Result | null,
 *   fates: Map<string, string>, gone: Map<string, import('./types').Constraint>, goneEntities: Map<string, Entity>,
 *   names: boolean, marks: boolean,
 *   rubber: {from: Point, to: Point, caught?: boolean} | null,
 *   sketch: Entity[], snap: {point: Point, word: string} | null,
 *   box: {from: Point, to: Point} | null,
 *   cut: Set<string>, wiggle: Entity[], pinned: {marks: Set<string>, entities: Set<string>},
 *   clashing?: Set<string>, clashes?: string[], entityFates?: Map<string, string>,
 *   fateInks?: boolean, ghosts?: Entity[], hides?: (constraint: string) => boolean,
 * }} Scene fateInks: entities in the colours of their fates, not of their freedom
 */

const CHUNK = 256;  // entities in one path: so many are drawn anew when one of them changes
const MOST_MARKS = 4000;
const MANY = 3000;  // entities that take longer than a frame to draw where no graphics processor helps

const FARTHEST_MARK = 80;  // pixels from its anchor at which a mark may begin to be seen

/**
 * Whether the marks of a constraint may stand where somebody sees them: they stand on its entities or between them, but
 * for those of angles and lengths, whose lines may lead anywhere.
 * @param {import('./types').Constraint} constraint @param {import('./types').Kind} kind
 * @param {(id: string) => Entity | undefined} entity @param {import('./shapes.js').Box} seen
 */
function isMarkSeen(constraint, kind, entity, seen) {
  const { refs } = constraint;
  if (kind.mark === 'opening' || kind.mark === 'length') return true;
  /** @type {import('./shapes.js').Box | null} */
  let box = null;
  for (const ref of refs) {
    const e = entity(ref.entity);
    if (!e) continue;
    if (e.type === 'xline' || e.type === 'ray' || ref.point.startsWith('control')) return true;
    box = box ? around(box, boundsOf(e)) : boundsOf(e);
    if (e.centre) box = around(box, [...e.centre, ...e.centre]);
  }
  if (!box) return false;
  const rim = 0.03 * Math.max(box[2] - box[0], box[3] - box[1]);  // corners are looked for a little beyond
  return meets([box[0] - rim, box[1] - rim, box[2] + rim, box[3] + rim], seen);
}

/** @param {string} fate of an entity */
const inkOf = (fate) => ({ created: 'added', restored: 'added', edited: 'edited', erased: 'deleted' }[fate] || 'followed');

export class Painter extends Pens {
  /**
   * @param {HTMLCanvasElement} below @param {HTMLCanvasElement} above @param {import('./view.js').View} view
   * @param {Map<string, import('./types').Kind>} kinds
   */
  constructor(below, above, view, kinds) {
    super(view);
    this.canvases = [below, above];
    this.below = /** @type {CanvasRenderingContext2D} */ (below.getContext('2d'));
    this.above = /** @type {CanvasRenderingContext2D} */ (above.getContext('2d'));
    this.kinds = kinds;
    /** @type {{ids: string[], paths: Map<string, Path2D> | null}[]} */
    this.chunks = [];
    /** @type {Map<string, number>} */
    this.chunkOf = new Map();
    /** @type {import('./marks.js').Placed[]} */
    this.placed = [];
    /** @type {Map<string, number>} */
    this.widths = new Map();
    /** @type {Set<string>} entities that are drawn above, not below */
    this.lifted = new Set();
    /** @type {{x: number, y: number, scale: number, picture: HTMLCanvasElement | null} | null} */
    this.last = null;  // the view of the picture of what stays, and a copy of that once somebody pans
  }

  /** @param {number} width @param {number} height in pixels of the page */
  resize(width, height) {
    this.ratio = window.devicePixelRatio || 1;
    this.last = null;
    this.view.width = width;
    this.view.height = height;
    for (const canvas of this.canvases) {
      canvas.width = Math.round(width * this.ratio);
      canvas.height = Math.round(height * this.ratio);
    }
  }

  /** @param {Drawing} drawing */
  takeAll(drawing) {
    this.chunks = [];
    this.chunkOf.clear();
    const box = drawing.box();
    this.origin = /** @type {Point} */ (box ? [(box[0] + box[2]) / 2, (box[1] + box[3]) / 2] : [0, 0]);
    for (const id of drawing.entities.keys()) this.#chunk(id);
  }

  /** @param {string} id */
  #chunk(id) {
    let number = this.chunkOf.get(id);
    if (number === undefined) {
      if (!this.chunks.length || this.chunks[this.chunks.length - 1].ids.length >= CHUNK) this.chunks.push({ ids: [], paths: null });
      number = this.chunks.length - 1;
      this.chunks[number].ids.push(id);
      this.chunkOf.set(id, number);
    }
    this.chunks[number].paths = null;
  }

  /** @param {Iterable<string>} ids of entities that are not what they were */
  touch(ids) {
    for (const id of ids) this.#chunk(id);
  }

  /** Colours of all entities may be others. */
  touchAll() {
    for (const chunk of this.chunks) chunk.paths = null;
  }

  /** @param {Set<string>} ids that are drawn above from now on */
  lift(ids) {
    const same = ids.size === this.lifted.size && [...ids].every((id) => this.lifted.has(id));
    if (same) return false;
    const touched = [...this.lifted, ...ids];
    this.lifted = new Set(ids);
    for (const id of touched) if (this.chunkOf.has(id)) this.#chunk(id);
    return true;
  }

  /** @param {Entity} e @param {Scene} scene */
  styleOf(e, scene) {
    const told = scene.fateInks ? undefined : scene.freedom?.entities?.[e.id];
    const fate = scene.fateInks ? scene.entityFates?.get(e.id) : undefined;
    const state = fate ? inkOf(fate) : (e.fixed && !e.block) || scene.cut.has(e.id) ? 'fixed' : scene.clashing?.has(e.id) ? 'clash' : !told ? 'ink' : told.free ? 'free' : 'defined';
    const end = e.type === 'xline' || e.type === 'ray' ? 'endless' : e.construction ? 'construction' : 'plain';
    return `${state} ${end}`;
  }

  /** @param {Drawing} drawing @param {Scene} scene @param {string[]} ids */
  #paths(drawing, scene, ids) {
    const paths = new Map();
    for (const id of ids) {
      const e = drawing.entities.get(id);
      if (!e || this.lifted.has(id) || e.type === 'text' || e.type === 'mtext' || e.type === 'point') continue;
      if (e.type === 'xline' || e.type === 'ray') continue;
      const style = this.styleOf(e, scene);
      let path = paths.get(style);
      if (!path) paths.set(style, path = new Path2D());
      trace(path, e, this.origin, 0);
    }
    return paths;
  }

  /**
   * The last picture of what stays, moved to where the view is now: while somebody pans a drawing that takes longer to
   * draw than a frame. Whether there was one.
   */
  shift() {
    const { last, view } = this, c = this.below, [still] = this.canvases;
    if (!last || this.chunks.length * CHUNK < MANY) return false;
    if (!last.picture) {
      last.picture = document.createElement('canvas');
      last.picture.width = still.width;
      last.picture.height = still.height;
      last.picture.getContext('2d')?.drawImage(still, 0, 0);
    }
    const grown = view.scale / last.scale;
    const x = view.width / 2 + (last.x - view.x) * view.scale - grown * view.width / 2;
    const y = view.height / 2 - (last.y - view.y) * view.scale - grown * view.height / 2;
    this.clear(c);
    c.drawImage(last.picture, x, y, grown * view.width, grown * view.height);
    return true;
  }

  /**
   * What stays while the pointer moves.
   * @param {Drawing} drawing @param {Scene} scene
   */
  paintBelow(drawing, scene) {
    const c = this.below;
    this.last = { x: this.view.x, y: this.view.y, scale: this.view.scale, picture: null };
    this.clear(c);
    this.grid(c);
    this.inDrawing(c);
    for (const chunk of this.chunks) {
      chunk.paths ||= this.#paths(drawing, scene, chunk.ids);
      for (const [style, path] of chunk.paths) {
        this.pen(c, style);
        c.stroke(path);
      }
    }
    for (const e of drawing.entities.values()) if (!this.lifted.has(e.id)) this.#single(c, e, scene);
    c.setTransform(this.ratio, 0, 0, this.ratio, 0, 0);
    c.setLineDash([]);
    if (scene.marks) this.#marks(c, drawing, scene);
    if (scene.names) this.#names(c, drawing);
  }

  /**
   * What no path holds: points, texts, lines without end.
   * @param {CanvasRenderingContext2D} c @param {Entity} e @param {Scene} scene
   */
  #single(c, e, scene) {
    if (e.type === 'xline' || e.type === 'ray') {
      this.stroke(c, e, this.styleOf(e, scene));
    } else if (e.type === 'point') {
      this.dot(c, /** @type {Point} */ (e.position), this.colours[this.styleOf(e, scene).split(' ')[0]], 2.6);
    } else if (e.type === 'text' || e.type === 'mtext') {
      this.text(c, e, this.colours[this.styleOf(e, scene).split(' ')[0]]);
    }
  }

  /** @param {string} text */
  widthOf = (text) => {
    let width = this.widths.get(text);
    if (width === undefined) {
      this.below.font = '11px ui-sans-serif, system-ui, "Liberation Sans", sans-serif';
      this.widths.set(text, width = this.below.measureText(text).width);
    }
    return width;
  };

  /** @param {string} fate @param {boolean} isHot @param {import('./marks.js').Mark} mark @returns {import('./marks.js').Tone} */
  #tone(fate, isHot, mark) {
    const k = this.colours;
    const fated = { deleted: 'deleted', 're-pointed': 'pointed', changed: 'pointed', added: 'added', restored: 'added', clash: 'deleted' }[fate];
    const tone = fated
      ? { ink: k[fated], plate: k[`${fated}-back`], rim: k[`${fated}-bar`], line: k[`${fated}-bar`],
          isStruck: fate === 'deleted', isDashed: fated === 'pointed' }
      : { ink: mark.text === undefined ? k.soft : k.dim, plate: k.card, rim: k['plate-rim'], line: k.lead };
    return isHot && !fated ? { ...tone, ink: k.mark, rim: k.mark, line: k.mark } : tone;
  }

  /** @param {CanvasRenderingContext2D} c @param {Drawing} drawing @param {Scene} scene */
  #marks(c, drawing, scene) {
    const entity = this.#entityIn(drawing, scene);
    const list = [];
    const fates = this.#fatesOf(scene);
    const tried = new Map((scene.trial?.change?.constraints || []).map((each) => [each.id, each]));
    const seen = this.view.seen(FARTHEST_MARK);
    for (const constraint of drawing.constraints.values()) {
      const kind = this.kinds.get(constraint.type);
      if (!kind || scene.hides?.(constraint.id) || !isMarkSeen(constraint, kind, entity, seen)) continue;
      list.push(...marksOf(tried.get(constraint.id) || constraint, kind, entity));
    }
    const before = (/** @type {string} */ id) => scene.goneEntities.get(id) || drawing.entities.get(id);
    for (const constraint of scene.gone.values()) {
      const kind = this.kinds.get(constraint.type);
      if (kind) list.push(...marksOf(constraint, kind, before));
    }
    for (const constraint of scene.trial?.change?.constraints || []) {
      const kind = this.kinds.get(constraint.type);
      if (kind && !drawing.constraints.has(constraint.id)) list.push(...marksOf(constraint, kind, entity));
    }
    const urgency = (/** @type {import('./marks.js').Mark} */ m) =>
      (fates.has(m.id) || pinned.marks.has(m.id) ? 0 : scene.hotMarks.has(m.id) ? 1 : m.text !== undefined ? 2 : 3);
    const { pinned } = scene;
    list.sort((a, b) => urgency(a) - urgency(b));
    const { view } = this;
    this.placed = place(list.slice(0, MOST_MARKS), view.toScreen, view.width, view.height, this.widthOf);
    c.font = '11px ui-sans-serif, system-ui, "Liberation Sans", sans-serif';
    c.textAlign = 'center';
    c.textBaseline = 'middle';
    for (const placed of [...this.placed].reverse()) {
      const { id } = placed.mark, isOff = drawing.constraints.get(id)?.active === false;
      const tone = this.#tone(fates.get(id) || (pinned.marks.has(id) ? 'clash' : ''), scene.hotMarks.has(id), placed.mark);
      drawMark(c, placed, isOff ? { ...tone, alpha: 0.45 } : tone, view.toScreen);
    }
  }

  /** @param {Scene} scene @returns {Map<string, string>} */
  #fatesOf(scene) {
    const fates = new Map(scene.clashes?.map?.((id) => [id, 'clash']) || []);
    for (const [id, fate] of scene.fates) fates.set(id, fate);
    for (const { id, fate } of scene.trial?.constraints || []) fates.set(id, fate);
    for (const id of scene.trial?.shortfall?.heldBackBy || []) fates.set(id, 'clash');
    return fates;
  }

  /**
   * The entities as a trial would have them.
   * @param {Drawing} drawing @param {Scene} scene
   */
  #entityIn(drawing, scene) {
    const tried = new Map([...(scene.trial?.change?.entities || []), ...scene.wiggle].map((e) => [e.id, e]));
    return (/** @type {string} */ id) => tried.get(id) || drawing.entities.get(id);
  }

  /** @param {CanvasRenderingContext2D} c @param {Drawing} drawing */
  #names(c, drawing) {
    c.font = '11px ui-monospace, "Liberation Mono", "DejaVu Sans Mono", monospace';
    c.textAlign = 'center';
    c.textBaseline = 'middle';
    for (const e of drawing.entities.values()) {
      const [x0, y0, x1, y1] = boundsOf(e);
      const [x, y] = this.view.toScreen([(x0 + x1) / 2, (y0 + y1) / 2]);
      if (x < 0 || y < 0 || x > this.view.width || y > this.view.height) continue;
      const w = c.measureText(e.id).width + 8;
      c.globalAlpha = 0.85;
      c.fillStyle = this.colours.card;
      c.fillRect(x - w / 2, y - 8, w, 16);
      c.globalAlpha = 1;
      c.fillStyle = this.colours.ink;
      c.fillText(e.id, x, y);
    }
  }

  // --- What follows the pointer ---

  /** @param {Drawing} drawing @param {Scene} scene */
  paintAbove(drawing, scene) {
    const c = this.above;
    this.clear(c);
    for (const id of scene.pinned.entities) this.bright(c, this.#entityIn(drawing, scene)(id), this.colours['deleted-bar'], 6, 0.5);
    for (const e of scene.ghosts || []) this.ghost(c, e);
    for (const id of scene.selected) this.bright(c, this.#entityIn(drawing, scene)(id), this.colours.mark, 3.4, 0.55);
    if (scene.trial) this.#trial(c, drawing, scene);
    if (!scene.wiggle.length) for (const id of scene.hot) this.bright(c, this.#entityIn(drawing, scene)(id), this.colours.mark, 4, 1);
    for (const [id, fate] of scene.entityFates || []) {
      this.bright(c, drawing.entities.get(id), this.colours[inkOf(fate)], 5, 0.35);
    }
    for (const e of scene.goneEntities.values()) if (!drawing.entities.has(e.id)) this.erased(c, e);
    for (const e of scene.wiggle) this.bright(c, e, this.colours.followed, 2.6, 1);
    for (const e of scene.sketch) this.bright(c, e, this.colours.edited, 2, 1);
    c.setTransform(this.ratio, 0, 0, this.ratio, 0, 0);
    this.#grips(c, drawing, scene);
    this.#arrows(c, drawing, scene);
    this.#aids(c, scene);
  }

  /**
   * What there would be, and faintly what there is.
   * @param {CanvasRenderingContext2D} c @param {Drawing} drawing @param {Scene} scene
   */
  #trial(c, drawing, scene) {
    const trial = /** @type {import('./types').Result} */ (scene.trial);
    const fates = new Map(trial.entities.map((each) => [each.id, each.fate]));
    const cuts = /^(trim|break) /.test(trial.text);
    const seen = this.view.seen(0), ghosts = [];
    /** @type {Map<string, Entity[]>} */
    const shown = new Map();
    for (const e of trial.change?.entities || []) {
      const old = drawing.entities.get(e.id), fate = fates.get(e.id) || 'followed';
      if (old && cuts) this.erased(c, old);
      else if (old && this.isSeen(old, seen)) ghosts.push(old);
      if (!this.isSeen(e, seen)) continue;
      const alike = shown.get(fate);
      if (alike) alike.push(e);
      else shown.set(fate, [e]);
    }
    this.ghosts(c, ghosts);
    for (const id of trial.change?.erased || []) {
      const e = drawing.entities.get(id);
      if (e) this.erased(c, e);
    }
    for (const [fate, alike] of shown) this.brights(c, alike, this.colours[inkOf(fate)], fate === 'followed' ? 2 : 2.6);
  }

  /** @param {CanvasRenderingContext2D} c @param {Drawing} drawing @param {Scene} scene */
  #grips(c, drawing, scene) {
    const entity = this.#entityIn(drawing, scene);
    for (const id of new Set([...scene.selected, ...scene.hot])) {
      const e = entity(id);
      if (!e || e.fixed) continue;
      for (const { point } of gripsOf(e).slice(0, 400)) {
        const [x, y] = this.view.toScreen(point);
        c.fillStyle = this.colours.card;
        c.strokeStyle = this.colours.mark;
        c.lineWidth = 1.6;
        c.beginPath();
        c.arc(x, y, 4, 0, 7);
        c.fill();
        c.stroke();
      }
    }
  }

  /**
   * Which way what is pointed at can still move.
   * @param {CanvasRenderingContext2D} c @param {Drawing} drawing @param {Scene} scene
   */
  #arrows(c, drawing, scene) {
    const [id] = scene.hot;
    const e = scene.hot.size === 1 && !scene.trial ? drawing.entities.get(id) : undefined;
    if (!e || e.fixed || scene.wiggle.length) return;
    c.strokeStyle = c.fillStyle = this.colours.free;
    c.lineWidth = 2;
    paintArrows(c, this.view, e, motionsOf(scene.freedom?.entities?.[id]));
  }

  /** @param {CanvasRenderingContext2D} c @param {Scene} scene */
  #aids(c, scene) {
    if (scene.rubber) {
      const from = this.view.toScreen(scene.rubber.from), to = this.view.toScreen(scene.rubber.to);
      c.strokeStyle = this.colours[scene.rubber.caught ? 'deleted' : 'soft'];
      c.lineWidth = 1;
      c.setLineDash([4, 4]);
      c.beginPath();
      c.moveTo(...from);
      c.lineTo(...to);
      c.stroke();
      c.setLineDash([]);
    }
    if (scene.box) this.box(c, scene.box);
    if (scene.snap) this.snap(c, scene.snap);
  }

}

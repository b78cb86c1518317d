// Lets an entity move a little along its free directions and back, with all that follows it. Only what is seen moves:
// the edits that it would take are tried and not done.

import { motionsOf, outwardAt } from './arrows.js';
import { attempt } from './link.js';
import { distance, gripsOf } from './shapes.js';
import { named, placed, written } from './words.js';

/** @typedef {import('./types').Point} Point */
/** @typedef {import('./types').Entity} Entity */
/** @typedef {import('./types').Motion} Motion */

const FAR = 14;     // pixels to each side
const TIME = 900;   // milliseconds for a motion there, to the other side, and back
const MOST = 4;     // motions that are shown one after the other

/** @param {number} from @param {number} to @param {number} share */
const between = (from, to, share) => from + (to - from) * share;
/** @param {number} from @param {number} to @param {number} share */
const turned = (from, to, share) => from + Math.atan2(Math.sin(to - from), Math.cos(to - from)) * share;

/**
 * An entity on its way from one state to another; shares below 0 lead to the other side.
 * @param {Entity} a @param {Entity} b @param {number} share @returns {Entity}
 */
export function onTheWay(a, b, share) {
  const number = (/** @type {number | undefined} */ from, /** @type {number | undefined} */ to) =>
    (from === undefined || to === undefined ? from : between(from, to, share));
  const angle = (/** @type {number | undefined} */ from, /** @type {number | undefined} */ to) =>
    (from === undefined || to === undefined ? from : turned(from, to, share));
  const point = (/** @type {Point | undefined} */ from, /** @type {Point | undefined} */ to) =>
    (from && to ? /** @type {Point} */ ([between(from[0], to[0], share), between(from[1], to[1], share)]) : from);
  const points = (/** @type {Point[] | undefined} */ from, /** @type {Point[] | undefined} */ to) =>
    (from && to && from.length === to.length ? from.map((p, i) => /** @type {Point} */ (point(p, to[i]))) : from);
  return { ...a, start: point(a.start, b.start), end: point(a.end, b.end), centre: point(a.centre, b.centre),
    position: point(a.position, b.position), point: point(a.point, b.point), direction: point(a.direction, b.direction),
    major_axis: point(a.major_axis, b.major_axis), control: points(a.control, b.control), vertices: points(a.vertices, b.vertices),
    radius: number(a.radius, b.radius), ratio: number(a.ratio, b.ratio), rotation: angle(a.rotation, b.rotation),
    start_angle: angle(a.start_angle, b.start_angle), end_angle: angle(a.end_angle, b.end_angle),
    start_param: angle(a.start_param, b.start_param), end_param: angle(a.end_param, b.end_param) };
}

export class Wiggle {
  /** @param {import('./window.js').Page} page */
  constructor(page) {
    this.page = page;
    this.round = 0;  // counts up when another one begins, or it is to end
  }

  stop() {
    this.round += 1;
    const { scene, painter } = this.page;
    if (!scene.wiggle.length) return;
    scene.wiggle = [];
    painter.lift(new Set());
    this.page.paintSoon(true);
  }

  /**
   * @param {string | undefined} id
   */
  async show(id) {
    this.stop();
    const { page, round } = this, e = id === undefined ? undefined : page.drawing.entities.get(id);
    if (!e) return page.say('point at an entity, or choose one: W shows how it can move');
    const told = page.scene.freedom?.entities?.[e.id], motions = told ? motionsOf(told) : [];
    if (e.fixed || !motions.length) return page.say(`${e.id} cannot move${told ? `: ${told.words}` : ''}`);
    page.say(`${e.id}: ${told?.words}`);
    try {
      for (const motion of motions.slice(0, MOST)) {
        const result = await attempt(this.#textOf(e, motion));
        if (round !== this.round) return;
        if (!result.error && result.change?.entities.length) await this.#play(result.change.entities, round);
      }
    } catch (failure) {
      page.complain(failure);
    }
    if (round === this.round) this.stop();
  }

  /**
   * The edit that moves it that way.
   * @param {Entity} e @param {Motion} motion
   */
  #textOf(e, motion) {
    const far = FAR / this.page.view.scale;
    const by = (/** @type {Point} */ [x, y]) => written([x * far, y * far]);
    if (motion.kind === 'slide' && motion.direction) return `drag ${named(e.id)} by ${by(motion.direction)}`;
    if (motion.kind === 'radius') return `set ${named(e.id)} radius ${(e.radius || 0) + far}`;
    if (motion.kind === 'length') return `drag ${placed(e.id, motion.end || 'end')} by ${by(outwardAt(e, motion.end || 'end'))}`;
    const centre = motion.centre || [Infinity, 0];
    const grips = gripsOf(e).filter((grip) => grip.place !== 'centre' || e.type === 'circle');
    const grip = grips.sort((a, b) => distance(b.point, centre) - distance(a.point, centre))[0];
    if (motion.kind !== 'turn' || !grip) return `drag ${grip ? placed(e.id, grip.place) : named(e.id)} by ${by([0.7, 0.7])}`;
    const arm = distance(grip.point, centre) || 1;
    return `drag ${placed(e.id, grip.place)} by ${by([-(grip.point[1] - centre[1]) / arm, (grip.point[0] - centre[0]) / arm])}`;
  }

  /**
   * There, to the other side, and back; who wants no motion sees the two sides.
   * @param {Entity[]} after @param {number} round @returns {Promise<void>}
   */
  #play(after, round) {
    const { page } = this, { scene, painter, drawing } = page;
    const pairs = after.flatMap((b) => {
      const a = drawing.entities.get(b.id);
      return a ? [{ a, b }] : [];
    });
    const still = matchMedia('(prefers-reduced-motion: reduce)').matches;
    painter.lift(new Set(pairs.map(({ a }) => a.id)));
    page.paintSoon(true);
    const start = performance.now();
    return new Promise((done) => {
      const step = (/** @type {number} */ now) => {
        const share = Math.min(1, Math.max(0, (now - start) / TIME));
        if (round !== this.round || share >= 1) return done();
        const way = still ? (share < 0.5 ? 1 : -1) : Math.sin(2 * Math.PI * share);
        scene.wiggle = pairs.map(({ a, b }) => onTheWay(a, b, way));
        page.paintSoon(false);
        requestAnimationFrame(step);
      };
      requestAnimationFrame(step);
    });
  }
}

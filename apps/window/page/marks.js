// The signs of constraints: which there are, where they stand, how they look. Placed anew for each view, so that they
// keep their size and do not lie on each other.

import { distance, midway, placePoint, tangentAt, piecesOf, boundsOf } from './shapes.js';

/** @typedef {import('./types').Point} Point */
/** @typedef {import('./types').Constraint} Constraint */
/** @typedef {import('./types').Entity} Entity */
/**
 * A sign, or a dimension with its lines, in drawing units.
 * @typedef {{id: string, kind: import('./types').Kind, at: Point, outward: Point, text?: string, from?: Point, to?: Point,
 *            along?: Point, apex?: Point, start?: number, end?: number, isSpot?: boolean}} Mark
 */
/** @typedef {{mark: Mark, x: number, y: number, w: number, h: number}} Placed in pixels of the screen, x and y the middle */

/** @param {Point} v @returns {Point} */
const unit = (v) => {
  const length = Math.hypot(v[0], v[1]);
  return length > 0 ? [v[0] / length, v[1] / length] : [0, 1];
};
/** @param {Point} v @returns {Point} */
const left = (v) => [-v[1], v[0]];
/** @param {Point} a @param {Point} b @returns {Point} */
const minus = (a, b) => [a[0] - b[0], a[1] - b[1]];

/**
 * @param {(id: string) => Entity | undefined} entity @param {import('./types').Ref} ref
 * @returns {{e: Entity, place: string, point: Point} | null}
 */
function resolve(entity, ref) {
  const e = entity(ref.entity);
  const point = e && placePoint(e, ref.point);
  return e && point ? { e, place: ref.point, point } : null;
}

/** @typedef {NonNullable<ReturnType<typeof resolve>>} Held */

/** @param {Held} held */
const isPoint = (held) => held.e.type === 'point' || (held.place !== 'whole' && !/^segment:\d+$/.test(held.place));

/** @param {Held} held @returns {[Point, Point] | null} */
function lineOf(held) {
  const { e, place } = held;
  if (e.type === 'line') return [/** @type {Point} */ (e.start), /** @type {Point} */ (e.end)];
  if (e.type === 'xline' || e.type === 'ray') {
    const p = /** @type {Point} */ (e.point), d = /** @type {Point} */ (e.direction);
    return [p, [p[0] + d[0], p[1] + d[1]]];
  }
  const number = place.match(/^segment:(\d+)/);
  const piece = number && piecesOf(e)[Number(number[1])];
  return piece && !piece.centre ? [piece.from, piece.to] : null;
}

/** @param {[Point, Point]} a @param {[Point, Point]} b @returns {Point | null} */
function crossing(a, b) {
  const d = minus(a[1], a[0]), f = minus(b[1], b[0]), turn = d[0] * f[1] - d[1] * f[0];
  if (Math.abs(turn) <= 1e-9 * Math.hypot(...d) * Math.hypot(...f)) return null;
  const g = minus(b[0], a[0]), t = (g[0] * f[1] - g[1] * f[0]) / turn;
  return [a[0][0] + t * d[0], a[0][1] + t * d[1]];
}

/** @param {[Point, Point]} line @param {Point} p @returns {Point} */
function footOn(line, p) {
  const d = minus(line[1], line[0]), g = minus(p, line[0]);
  const t = (g[0] * d[0] + g[1] * d[1]) / (d[0] * d[0] + d[1] * d[1] || 1);
  return [line[0][0] + t * d[0], line[0][1] + t * d[1]];
}

/**
 * The two points between which a dimension measures.
 * @param {Held[]} held @returns {[Point, Point] | null}
 */
function measured(held) {
  if (held.length === 1) {
    const line = isPoint(held[0]) ? null : lineOf(held[0]);
    return line || (isPoint(held[0]) ? [[0, 0], held[0].point] : null);
  }
  const [a, b] = held, la = isPoint(a) ? null : lineOf(a), lb = isPoint(b) ? null : lineOf(b);
  if (la && lb) return [midway(...la), footOn(lb, midway(...la))];
  if (lb) return [a.point, footOn(lb, a.point)];
  if (la) return [footOn(la, b.point), b.point];
  return [a.point, b.point];
}

/**
 * The marks of one constraint where its entities are now.
 * @param {Constraint} c @param {import('./types').Kind} kind @param {(id: string) => Entity | undefined} entity
 * @returns {Mark[]}
 */
export function marksOf(c, kind, entity) {
  if (c.type === 'internal') return [];
  const held = /** @type {Held[]} */ (c.refs.map((ref) => resolve(entity, ref)).filter(Boolean));
  if (!held.length) return [];
  const base = { id: c.id, kind, text: kind.isDimension ? c.text || '?' : undefined };
  const at = (/** @type {Point} */ point, /** @type {Point} */ outward) => ({ ...base, at: point, outward: unit(outward) });
  const on = (/** @type {Held} */ h) => at(h.point, left(tangentAt(h.e, h.place)));
  switch (kind.mark) {
    case 'each': return held.map(on);
    case 'point': return [{ ...on(held.find(isPoint) || held[0]), isSpot: true }];
    case 'between': return held.length > 1
      ? [at(midway(held[0].point, held[1].point), left(minus(held[1].point, held[0].point)))] : [on(held[0])];
    case 'corner': return cornerMarks(held, at, on);
    case 'touch': return [on(held.find(isPoint) || held[held.length - 1])];
    case 'length': return lengthMarks(held, kind, at, on);
    case 'radial': return [radialMark(held[0], at, on)];
    case 'opening': return [openingMark(c, held, at, on)];
    default: return [on(held[0])];
  }
}

/** @typedef {(point: Point, outward: Point) => Mark} At */
/** @typedef {(held: Held) => Mark} On */

/** @param {Held[]} held @param {At} at @param {On} on @returns {Mark[]} */
function cornerMarks(held, at, on) {
  const point = held.find(isPoint);
  if (point) return [on(point)];
  const a = lineOf(held[0]), b = held[1] && lineOf(held[1]), corner = a && b && crossing(a, b);
  if (!corner || !isNear(held[0].e, corner) || !isNear(held[1].e, corner)) return held.map(on);
  const one = unit(minus(held[0].point, corner)), other = unit(minus(held[1].point, corner));
  return [at(corner, [one[0] + other[0], one[1] + other[1]])];
}

/** @param {Entity} e @param {Point} p */
function isNear(e, p) {
  const [x0, y0, x1, y1] = boundsOf(e), rim = 0.02 * Math.max(x1 - x0, y1 - y0);
  return p[0] >= x0 - rim && p[0] <= x1 + rim && p[1] >= y0 - rim && p[1] <= y1 + rim;
}

/** @param {Held[]} held @param {import('./types').Kind} kind @param {At} at @param {On} on @returns {Mark[]} */
function lengthMarks(held, kind, at, on) {
  const ends = measured(held);
  if (!ends) return [on(held[0])];
  /** @type {Point} */
  const along = kind.coordinate === 0 ? [1, 0] : kind.coordinate === 1 ? [0, 1] : unit(minus(ends[1], ends[0]));
  return [{ ...at(midway(...ends), left(along)), from: ends[0], to: ends[1], along }];
}

/** @param {Held} held @param {At} at @param {On} on @returns {Mark} */
function radialMark(held, at, on) {
  const number = held.place.match(/^segment:(\d+)/);
  const piece = piecesOf(held.e)[number ? Number(number[1]) : 0];
  if (!piece || !piece.centre) return on(held);
  const rim = placePoint(held.e, held.e.type === 'circle' ? 'whole' : held.place) || held.point;
  const out = held.e.type === 'circle' ? /** @type {Point} */ ([Math.SQRT1_2, Math.SQRT1_2]) : unit(minus(rim, piece.centre));
  const r = piece.radius || 0;
  /** @type {Point} */
  const end = [piece.centre[0] + r * out[0], piece.centre[1] + r * out[1]];
  return { ...at(end, out), from: piece.centre, to: end };
}

/** @param {Held} held @returns {[Point, Point] | null} */
function directed(held) {
  const line = lineOf({ ...held, place: held.place.startsWith('segment') ? held.place : 'whole' });
  return line && held.place === 'end' ? [line[1], line[0]] : line;
}

/** @param {Constraint} c @param {Held[]} held @param {At} at @param {On} on @returns {Mark} */
function openingMark(c, held, at, on) {
  const value = c.value || 0, one = directed(held[0]), other = held[1] && directed(held[1]);
  const open = (/** @type {Point} */ apex, /** @type {number} */ start) => {
    const turn = Math.atan2(Math.sin(value), Math.cos(value)), middle = start + turn / 2;
    return { ...at(apex, [Math.cos(middle), Math.sin(middle)]), apex, start, end: start + turn };
  };
  if (held.length === 1 && one) return open(one[0], 0);
  const apex = one && other && held.length === 2 && crossing(one, other);
  if (!apex || !one || !other || distance(apex, midway(...one)) > 20 * distance(...one)) return on(held[held.length - 1]);
  let first = minus(one[1], one[0]);
  const second = minus(other[1], other[0]);
  const behind = (/** @type {Point} */ d, /** @type {[Point, Point]} */ l) => {
    const m = minus(midway(...l), apex);
    return d[0] * m[0] + d[1] * m[1] < 0;
  };
  if (behind(first, one) && behind(second, other)) first = [-first[0], -first[1]];
  return open(apex, Math.atan2(first[1], first[0]));
}

// --- Where they stand on the screen ---

const SIGN = 17;  // pixels: a sign of 12 with its plate
const CELL = 32;  // pixels: of the grid that knows where something stands

/** Boxes that do not overlap. */
class Room {
  constructor() {
    /** @type {Map<string, Placed[]>} */
    this.cells = new Map();
  }

  /** @param {Placed} box @param {(key: string) => boolean} visit */
  #some(box, visit) {
    for (let x = Math.floor((box.x - box.w / 2) / CELL); x <= Math.floor((box.x + box.w / 2) / CELL); x += 1)
      for (let y = Math.floor((box.y - box.h / 2) / CELL); y <= Math.floor((box.y + box.h / 2) / CELL); y += 1)
        if (visit(`${x} ${y}`)) return true;
    return false;
  }

  /** @param {Placed} box */
  isFree(box) {
    return !this.#some(box, (key) => (this.cells.get(key) || []).some((other) =>
      Math.abs(other.x - box.x) * 2 < other.w + box.w && Math.abs(other.y - box.y) * 2 < other.h + box.h));
  }

  /** @param {Placed} box */
  take(box) {
    this.#some(box, (key) => {
      const list = this.cells.get(key);
      if (list) list.push(box);
      else this.cells.set(key, [box]);
      return false;
    });
  }
}

// How far from its anchor a sign may stand, in pixels, and in which directions, as turns from the best one.
const REACH = [15, 27, 41];
const TURNS = [0, Math.PI, Math.PI / 4, -Math.PI / 4, 3 * Math.PI / 4, -3 * Math.PI / 4, Math.PI / 2, -Math.PI / 2];

/**
 * Where each mark stands; those without room are left out, until the view is nearer.
 * @param {Mark[]} marks urgent ones first
 * @param {(p: Point) => Point} toScreen @param {number} width @param {number} height
 * @param {(text: string) => number} widthOf @returns {Placed[]}
 */
export function place(marks, toScreen, width, height, widthOf) {
  const room = new Room(), placed = [];
  for (const mark of marks) {
    const [x, y] = toScreen(mark.at);
    if (x < -60 || y < -60 || x > width + 60 || y > height + 60 || !Number.isFinite(x + y)) continue;
    if (mark.from && mark.to && distance(toScreen(mark.from), toScreen(mark.to)) < 6) continue;
    const spot = spotFor(mark, x, y, room, mark.text === undefined ? SIGN : widthOf(mark.text) + 10);
    if (!spot) continue;
    room.take(spot);
    placed.push(spot);
  }
  return placed;
}

/**
 * @param {Mark} mark @param {number} x @param {number} y @param {Room} room @param {number} w @returns {Placed | null}
 */
function spotFor(mark, x, y, room, w) {
  if (mark.isSpot) {
    const spot = { mark, x, y, w: 7, h: 7 };
    return room.isFree(spot) ? spot : null;
  }
  const best = Math.atan2(-mark.outward[1], mark.outward[0]);
  const reach = mark.apex ? [38, 52] : mark.along ? [22, 36, 52, 70] : REACH;
  const turns = mark.along ? TURNS.slice(0, 2) : mark.apex ? TURNS.slice(0, 1) : TURNS;
  for (const far of reach)
    for (const turn of turns) {
      const c = Math.cos(best + turn), s = Math.sin(best + turn);
      // A wide label stands off as far as its side reaches.
      const off = far + (mark.text === undefined ? 0 : Math.abs(c) * (w - SIGN) / 2);
      const spot = { mark, x: x + off * c, y: y + off * s, w, h: SIGN };
      if (room.isFree(spot)) return spot;
    }
  return null;
}

// --- How they look ---

/** @typedef {{path: Path2D, isDot: boolean, isBold: boolean}[]} Glyph */
/** @type {Map<string, Glyph>} */
const glyphs = new Map();

/**
 * Reads the signs out of the sheet that stands in the page.
 * @param {Element} sheet
 */
export function readGlyphs(sheet) {
  for (const group of sheet.querySelectorAll('g[id], circle[id], path[id]')) {
    const parts = group.tagName === 'g' ? [...group.children] : [group];
    glyphs.set(group.id.replace(/^hf-/, ''), parts.map((part) => ({
      path: pathOf(part), isDot: part.classList.contains('dot'), isBold: part.classList.contains('bold'),
    })));
  }
}

/** @param {Element} part @returns {Path2D} */
function pathOf(part) {
  const number = (/** @type {string} */ name) => Number(part.getAttribute(name) || 0);
  if (part.tagName === 'path') return new Path2D(part.getAttribute('d') || '');
  const path = new Path2D();
  if (part.tagName === 'rect') path.rect(number('x'), number('y'), number('width'), number('height'));
  else if (part.tagName === 'ellipse') path.ellipse(number('cx'), number('cy'), number('rx'), number('ry'), 0, 0, 7);
  else path.arc(number('cx'), number('cy'), number('r'), 0, 7);
  return path;
}

/** @param {CanvasRenderingContext2D} c @param {string} sign @param {number} x @param {number} y @param {string} colour */
function drawGlyph(c, sign, x, y, colour) {
  c.save();
  c.translate(x, y);
  c.strokeStyle = c.fillStyle = colour;
  c.lineCap = c.lineJoin = 'round';
  for (const { path, isDot, isBold } of glyphs.get(sign) || []) {
    c.lineWidth = isBold ? 2.2 : 1.3;
    if (isDot) c.fill(path);
    else c.stroke(path);
  }
  c.restore();
}

/**
 * @typedef {{ink: string, plate: string, rim: string, line: string, isStruck?: boolean, isDashed?: boolean, alpha?: number}} Tone
 */

/**
 * @param {CanvasRenderingContext2D} c @param {Placed} placed @param {Tone} tone @param {(p: Point) => Point} toScreen
 */
export function drawMark(c, placed, tone, toScreen) {
  const { mark, x, y, w, h } = placed;
  c.globalAlpha = tone.alpha ?? 1;
  if (mark.isSpot && !tone.isStruck) {
    drawSpot(c, x, y, tone);
  } else {
    drawLines(c, placed, tone, toScreen);
    c.fillStyle = tone.plate;
    c.strokeStyle = tone.rim;
    c.lineWidth = 1;
    c.setLineDash(tone.isDashed ? [3, 1.6] : []);
    c.beginPath();
    c.roundRect(x - w / 2, y - h / 2, w, h, 4);
    c.fill();
    c.stroke();
    c.setLineDash([]);
    c.fillStyle = tone.ink;
    if (mark.text === undefined) drawGlyph(c, mark.kind.sign, x, y, tone.ink);
    else c.fillText(mark.text, x, y + 0.5);
    if (tone.isStruck) {
      c.strokeStyle = tone.ink;
      c.lineWidth = 1.7;
      c.beginPath();
      c.moveTo(x - w / 2 - 2, y + h / 2);
      c.lineTo(x + w / 2 + 2, y - h / 2);
      c.stroke();
    }
  }
  c.globalAlpha = 1;
}

/** @param {CanvasRenderingContext2D} c @param {number} x @param {number} y @param {Tone} tone */
function drawSpot(c, x, y, tone) {
  c.beginPath();
  c.arc(x, y, 3, 0, 7);
  c.fillStyle = tone.ink;
  c.fill();
  c.strokeStyle = tone.plate;
  c.lineWidth = 1;
  c.stroke();
}

/**
 * The lead from a sign to what it is of, or a dimension's lines.
 * @param {CanvasRenderingContext2D} c @param {Placed} placed @param {Tone} tone @param {(p: Point) => Point} toScreen
 */
function drawLines(c, { mark, x, y }, tone, toScreen) {
  const [ax, ay] = toScreen(mark.at);
  c.strokeStyle = c.fillStyle = tone.line;
  c.lineWidth = 0.8;
  c.beginPath();
  if (mark.along && mark.from && mark.to) {
    const [fx, fy] = toScreen(mark.from), [tx, ty] = toScreen(mark.to), [ux, uy] = [mark.along[0], -mark.along[1]];
    const onLine = (/** @type {number} */ px, /** @type {number} */ py) => {
      const t = (px - x) * ux + (py - y) * uy;
      return /** @type {Point} */ ([x + t * ux, y + t * uy]);
    };
    const a = onLine(fx, fy), b = onLine(tx, ty);
    c.moveTo(fx, fy);
    c.lineTo(...a);
    c.lineTo(...b);
    c.lineTo(tx, ty);
    c.stroke();
    arrow(c, b, a);
    arrow(c, a, b);
    return;
  }
  if (mark.apex && mark.start !== undefined && mark.end !== undefined) {
    const r = Math.hypot(x - ax, y - ay);
    c.arc(ax, ay, r, -mark.start, -mark.end, mark.end > mark.start);
    c.stroke();
    return;
  }
  c.moveTo(ax, ay);
  c.lineTo(x, y);
  c.stroke();
  if (mark.from) arrow(c, [x, y], [ax, ay]);
}

/** @param {CanvasRenderingContext2D} c @param {Point} from @param {Point} to */
function arrow(c, from, to) {
  const length = distance(from, to);
  if (length < 14) return;
  const ux = (to[0] - from[0]) / length, uy = (to[1] - from[1]) / length;
  c.beginPath();
  c.moveTo(to[0], to[1]);
  c.lineTo(to[0] - 7 * ux - 2.4 * uy, to[1] - 7 * uy + 2.4 * ux);
  c.lineTo(to[0] - 7 * ux + 2.4 * uy, to[1] - 7 * uy - 2.4 * ux);
  c.fill();
}

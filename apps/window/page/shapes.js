// The shapes of a drawing: how they run, where their places are, how far away they are. Drawing units, radians.

/** @typedef {import('./types').Entity} Entity */
/** @typedef {import('./types').Point} Point */
/** @typedef {[number, number, number, number]} Box left, bottom, right, top */
/**
 * One segment of a polyline, or any arc or line by itself.
 * @typedef {{from: Point, to: Point, centre?: Point, radius?: number, start?: number, end?: number, clockwise?: boolean}} Piece
 */

const TURN = 2 * Math.PI;
// Chords of a curve that has no arcs: so many for each span or full turn look smooth at any size on a screen.
const CHORDS_OF_A_SPAN = 24;
const CHORDS_OF_A_TURN = 128;

/** @param {Point} a @param {Point} b @returns {number} */
export const distance = (a, b) => Math.hypot(b[0] - a[0], b[1] - a[1]);
/** @param {Point} a @param {Point} b @returns {Point} */
export const midway = (a, b) => [(a[0] + b[0]) / 2, (a[1] + b[1]) / 2];
/** @param {Point} c @param {number} r @param {number} angle @returns {Point} */
const polar = (c, r, angle) => [c[0] + r * Math.cos(angle), c[1] + r * Math.sin(angle)];

/** @param {Entity} e @returns {Piece[]} */
export function segmentsOf(e) {
  const vertices = /** @type {Point[]} */ (e.vertices), bulges = e.bulges || [];
  const count = e.closed ? vertices.length : vertices.length - 1;
  const pieces = [];
  for (let i = 0; i < count; i += 1) pieces.push(segment(vertices[i], vertices[(i + 1) % vertices.length], bulges[i] || 0));
  return pieces;
}

/**
 * A bulge is the tangent of a quarter of the arc's angle, positive counter-clockwise.
 * @param {Point} from @param {Point} to @param {number} bulge @returns {Piece}
 */
function segment(from, to, bulge) {
  const chord = distance(from, to);
  if (bulge === 0 || chord === 0) return { from, to };
  const radius = chord * (1 + bulge * bulge) / (4 * Math.abs(bulge));
  const rise = (1 - bulge * bulge) / (4 * bulge);
  /** @type {Point} */
  const centre = [(from[0] + to[0]) / 2 - rise * (to[1] - from[1]), (from[1] + to[1]) / 2 + rise * (to[0] - from[0])];
  const angleTo = (/** @type {Point} */ p) => Math.atan2(p[1] - centre[1], p[0] - centre[0]);
  return { from, to, centre, radius, start: angleTo(from), end: angleTo(to), clockwise: bulge < 0 };
}

/** @param {Entity} e @param {number} t @returns {Point} */
function ellipseAt(e, t) {
  const [cx, cy] = /** @type {Point} */ (e.centre), [ax, ay] = /** @type {Point} */ (e.major_axis);
  const r = /** @type {number} */ (e.ratio), c = Math.cos(t), s = Math.sin(t);
  return [cx + ax * c - ay * r * s, cy + ay * c + ax * r * s];
}

/** @param {Entity} e @returns {Point[]} */
function ellipsePoints(e) {
  const from = e.start_param ?? 0, to = e.end_param ?? TURN;
  const count = Math.max(8, Math.ceil(CHORDS_OF_A_TURN * (to - from) / TURN));
  return Array.from({ length: count + 1 }, (_, i) => ellipseAt(e, from + (to - from) * i / count));
}

/**
 * Knots and control points of one run: a periodic spline wraps both.
 * @param {Entity} e
 */
function flatSpline(e) {
  const degree = /** @type {number} */ (e.degree);
  const knots = /** @type {number[]} */ (e.knots), control = /** @type {Point[]} */ (e.control);
  const weights = e.weights && e.weights.length ? e.weights : control.map(() => 1);
  if (!e.periodic) return { degree, knots, control, weights, from: knots[degree], to: knots[control.length] };
  // The knots of one period repeat; so many control points of the beginning stand at the end once more.
  const n = control.length, copies = degree + 1 - (knots.length - n);
  const from = knots[0], to = knots[knots.length - 1];
  const knot = (/** @type {number} */ i) => knots[((i % n) + n) % n] + (to - from) * Math.floor(i / n);
  const flat = Array.from({ length: n + copies + degree + 1 }, (_, i) => knot(i - copies));
  const wrap = (/** @type {any[]} */ list) => Array.from({ length: n + copies }, (_, i) => list[i % n]);
  return { degree, knots: flat, control: wrap(control), weights: wrap(weights), from, to };
}

/**
 * By de Boor's algorithm, in homogeneous coordinates.
 * @param {ReturnType<typeof flatSpline>} s @param {number} span @param {number} t @returns {Point}
 */
function splineAt(s, span, t) {
  const { degree, knots } = s;
  const d = [];
  for (let j = 0; j <= degree; j += 1) {
    const i = span - degree + j, w = s.weights[i];
    d.push([s.control[i][0] * w, s.control[i][1] * w, w]);
  }
  for (let r = 1; r <= degree; r += 1)
    for (let j = degree; j >= r; j -= 1) {
      const low = knots[span - degree + j], width = knots[span + 1 + j - r] - low;
      const a = width === 0 ? 0 : (t - low) / width;
      for (let k = 0; k < 3; k += 1) d[j][k] = (1 - a) * d[j - 1][k] + a * d[j][k];
    }
  const [x, y, w] = d[degree];
  return [x / w, y / w];
}

/** @param {Entity} e @returns {Point[]} */
function splinePoints(e) {
  const s = flatSpline(e);
  /** @type {Point[]} */
  const points = [];
  for (let span = s.degree; span < s.control.length; span += 1) {
    const from = s.knots[span], to = s.knots[span + 1];
    if (to <= from || from < s.from || to > s.to) continue;
    for (let i = points.length ? 1 : 0; i <= CHORDS_OF_A_SPAN; i += 1)
      points.push(splineAt(s, span, from + (to - from) * i / CHORDS_OF_A_SPAN));
  }
  return points;
}

/** @type {WeakMap<Entity, Point[]>} */
const runs = new WeakMap();

/**
 * The chords of a curve that is drawn by chords.
 * @param {Entity} e @returns {Point[]}
 */
export function runOf(e) {
  let run = runs.get(e);
  if (!run) {
    run = e.type === 'spline' ? splinePoints(e) : ellipsePoints(e);
    runs.set(e, run);
  }
  return run;
}

/**
 * The pieces of a curve of lines and arcs; none for others.
 * @param {Entity} e @returns {Piece[]}
 */
export function piecesOf(e) {
  const centre = /** @type {Point} */ (e.centre), radius = /** @type {number} */ (e.radius);
  switch (e.type) {
    case 'line': return [{ from: /** @type {Point} */ (e.start), to: /** @type {Point} */ (e.end) }];
    case 'arc': {
      const start = /** @type {number} */ (e.start_angle), end = /** @type {number} */ (e.end_angle);
      return [{ from: polar(centre, radius, start), to: polar(centre, radius, end), centre, radius, start, end }];
    }
    case 'circle': {
      const from = polar(centre, radius, 0);
      return [{ from, to: from, centre, radius, start: 0, end: TURN }];
    }
    case 'polyline': return segmentsOf(e);
    default: return [];
  }
}

/**
 * Draws an entity into a path. Points and texts leave none.
 * @param {Path2D} path @param {Entity} e @param {Point} origin what lies at the path's 0, 0
 * @param {number} far how long lines without end are
 */
export function trace(path, e, origin, far) {
  const [ox, oy] = origin;
  if (e.type === 'line') {
    const [x0, y0] = /** @type {Point} */ (e.start), [x1, y1] = /** @type {Point} */ (e.end);
    path.moveTo(x0 - ox, y0 - oy);
    path.lineTo(x1 - ox, y1 - oy);
    return;
  }
  if (e.type === 'xline' || e.type === 'ray') {
    const [px, py] = /** @type {Point} */ (e.point), [dx, dy] = /** @type {Point} */ (e.direction);
    const step = far / (Math.hypot(dx, dy) || 1), back = e.type === 'ray' ? 0 : step;
    path.moveTo(px - ox - back * dx, py - oy - back * dy);
    path.lineTo(px - ox + step * dx, py - oy + step * dy);
    return;
  }
  if (e.type === 'spline' || e.type === 'ellipse' || e.type === 'elliptical_arc') {
    runOf(e).forEach(([x, y], i) => (i ? path.lineTo(x - ox, y - oy) : path.moveTo(x - ox, y - oy)));
    return;
  }
  piecesOf(e).forEach((piece, i) => {
    if (i === 0) path.moveTo(piece.from[0] - ox, piece.from[1] - oy);
    if (!piece.centre) path.lineTo(piece.to[0] - ox, piece.to[1] - oy);
    else path.arc(piece.centre[0] - ox, piece.centre[1] - oy, /** @type {number} */ (piece.radius),
                  /** @type {number} */ (piece.start), /** @type {number} */ (piece.end), piece.clockwise);
  });
}

/** @param {Point[]} points @returns {Box} */
function boxOf(points) {
  /** @type {Box} */
  const box = [Infinity, Infinity, -Infinity, -Infinity];
  for (const [x, y] of points) {
    box[0] = Math.min(box[0], x);
    box[1] = Math.min(box[1], y);
    box[2] = Math.max(box[2], x);
    box[3] = Math.max(box[3], y);
  }
  return box;
}

/** @param {Piece} piece @returns {Point[]} */
function extremesOf(piece) {
  const { centre, radius } = piece;
  if (!centre || radius === undefined) return [piece.from, piece.to];
  const points = [piece.from, piece.to];
  for (let quarter = 0; quarter < 4; quarter += 1)
    if (sweeps(piece, quarter * Math.PI / 2)) points.push(polar(centre, radius, quarter * Math.PI / 2));
  return points;
}

/**
 * Whether an arc passes an angle.
 * @param {Piece} piece @param {number} angle
 */
function sweeps(piece, angle) {
  const [a, b] = piece.clockwise ? [piece.end, piece.start] : [piece.start, piece.end];
  const from = /** @type {number} */ (a);
  const turn = (/** @type {number} */ x) => ((x % TURN) + TURN) % TURN;
  const sweep = /** @type {number} */ (b) - from;
  return turn(angle - from) <= (sweep >= TURN ? TURN : turn(sweep));
}

/** @type {WeakMap<Entity, Box>} */
const boxes = new WeakMap();

/**
 * Lines without end count with their point alone.
 * @param {Entity} e @returns {Box}
 */
export function boundsOf(e) {
  let box = boxes.get(e);
  if (!box) {
    box = boxOf(boundingPoints(e));
    boxes.set(e, box);
  }
  return box;
}

/** @param {Box} a @param {Box} b */
export const meets = (a, b) => a[0] <= b[2] && b[0] <= a[2] && a[1] <= b[3] && b[1] <= a[3];

/** @param {Box} a @param {Box} b @returns {Box} around both */
export const around = (a, b) => [Math.min(a[0], b[0]), Math.min(a[1], b[1]), Math.max(a[2], b[2]), Math.max(a[3], b[3])];

/** @param {Entity} e @returns {Point[]} */
function boundingPoints(e) {
  switch (e.type) {
    case 'line': return [/** @type {Point} */ (e.start), /** @type {Point} */ (e.end)];
    case 'point': return [/** @type {Point} */ (e.position)];
    case 'text': case 'mtext': return textCorners(e);
    case 'xline': case 'ray': return [/** @type {Point} */ (e.point)];
    case 'spline': case 'ellipse': case 'elliptical_arc': return runOf(e);
    default: return piecesOf(e).flatMap(extremesOf);
  }
}

/**
 * A guess at a text's width: its letters are about six tenths as wide as high.
 * @param {Entity} e @returns {Point[]}
 */
export function textCorners(e) {
  const [x, y] = /** @type {Point} */ (e.position), h = e.height || 1, a = e.rotation || 0;
  const w = 0.6 * h * Math.max(1, (e.text || '').length), c = Math.cos(a), s = Math.sin(a);
  return [[x, y], [x + w * c, y + w * s], [x + w * c - h * s, y + w * s + h * c], [x - h * s, y + h * c]];
}

/** @param {Point} a @param {Point} b @param {Point} p @returns {Point} */
function nearestOnSegment(a, b, p) {
  const dx = b[0] - a[0], dy = b[1] - a[1], square = dx * dx + dy * dy;
  const t = square === 0 ? 0 : Math.max(0, Math.min(1, ((p[0] - a[0]) * dx + (p[1] - a[1]) * dy) / square));
  return [a[0] + t * dx, a[1] + t * dy];
}

/** @param {Piece} piece @param {Point} p @returns {Point} */
function nearestOnPiece(piece, p) {
  const { centre, radius } = piece;
  if (!centre || radius === undefined) return nearestOnSegment(piece.from, piece.to, p);
  const angle = Math.atan2(p[1] - centre[1], p[0] - centre[0]);
  if (sweeps(piece, angle)) return polar(centre, radius, angle);
  return distance(piece.from, p) < distance(piece.to, p) ? piece.from : piece.to;
}

/**
 * The point of an entity that is nearest, and on which of its segments it lies.
 * @param {Entity} e @param {Point} p @returns {{point: Point, segment: number}}
 */
export function nearest(e, p) {
  if (e.type === 'point') return { point: /** @type {Point} */ (e.position), segment: 0 };
  if (e.type === 'text' || e.type === 'mtext') {
    const [x0, y0, x1, y1] = boundsOf(e);
    return { point: [Math.max(x0, Math.min(x1, p[0])), Math.max(y0, Math.min(y1, p[1]))], segment: 0 };
  }
  if (e.type === 'xline' || e.type === 'ray') return { point: nearestOnEndless(e, p), segment: 0 };
  const pieces = piecesOf(e);
  /** @type {{point: Point, segment: number}} */
  let best = { point: [Infinity, Infinity], segment: 0 };
  const offer = (/** @type {Point} */ point, /** @type {number} */ segment) => {
    if (distance(point, p) < distance(best.point, p)) best = { point, segment };
  };
  if (pieces.length) pieces.forEach((piece, i) => offer(nearestOnPiece(piece, p), i));
  else {
    const run = runOf(e);
    for (let i = 1; i < run.length; i += 1) offer(nearestOnSegment(run[i - 1], run[i], p), 0);
  }
  return best;
}

/** @param {Entity} e @param {Point} p @returns {Point} */
function nearestOnEndless(e, p) {
  const [px, py] = /** @type {Point} */ (e.point), [dx, dy] = /** @type {Point} */ (e.direction);
  let t = ((p[0] - px) * dx + (p[1] - py) * dy) / (dx * dx + dy * dy || 1);
  if (e.type === 'ray') t = Math.max(0, t);
  return [px + t * dx, py + t * dy];
}

/**
 * The places of an entity that can be taken hold of.
 * @param {Entity} e @returns {{place: string, point: Point}[]}
 */
export function gripsOf(e) {
  const of = (/** @type {string} */ place) => ({ place, point: /** @type {Point} */ (placePoint(e, place)) });
  switch (e.type) {
    case 'line': return [of('start'), of('end')];
    case 'arc': case 'elliptical_arc': return [of('start'), of('end'), of('centre')];
    case 'circle': case 'ellipse': return [of('centre')];
    case 'point': return [{ place: 'whole', point: /** @type {Point} */ (e.position) }];
    case 'text': case 'mtext': return [{ place: 'whole', point: /** @type {Point} */ (e.position) }];
    case 'xline': case 'ray': return [of('start')];
    case 'spline': return (e.control || []).map((point, i) => ({ place: `control:${i}`, point }));
    case 'polyline': {
      const vertices = e.vertices || [], last = vertices.length - 1;
      return vertices.map((point, i) => ({
        place: !e.closed && i === last ? `segment:${i - 1}.end` : `segment:${i}.start`, point,
      }));
    }
    default: return [];
  }
}

/** @param {Piece} piece @param {string} part @returns {Point | null} */
function pieceAt(piece, part) {
  const { centre, radius, start, end } = piece;
  if (part === 'start') return piece.from;
  if (part === 'end') return piece.to;
  if (part === 'centre') return centre || null;
  if (!centre || radius === undefined || start === undefined || end === undefined) return midway(piece.from, piece.to);
  const turn = (/** @type {number} */ x) => ((x % TURN) + TURN) % TURN;
  const sweep = Math.abs(end - start) >= TURN ? TURN : piece.clockwise ? -turn(start - end) : turn(end - start);
  return polar(centre, radius, start + sweep / 2);
}

/**
 * Where a place is: a point of its own, or for a whole curve or segment its middle.
 * @param {Entity} e @param {string} place @returns {Point | null}
 */
export function placePoint(e, place) {
  const [kind, number] = place.split(/[:.]/);
  if (e.type === 'point' || e.type === 'text' || e.type === 'mtext') return /** @type {Point} */ (e.position);
  if (e.type === 'xline' || e.type === 'ray') return /** @type {Point} */ (e.point);
  if (kind === 'centre') return e.centre || null;
  if (kind === 'control') return (e.control || [])[Number(number)] || null;
  const pieces = piecesOf(e);
  if (kind === 'segment') {
    const piece = pieces[Number(number)];
    return piece ? pieceAt(piece, place.split('.')[1] || 'mid') : null;
  }
  if (pieces.length === 1) return pieceAt(pieces[0], kind === 'whole' ? 'mid' : kind);
  if (pieces.length) return pieceAt(pieces[Math.floor(pieces.length / 2)], 'mid');
  const run = runOf(e);
  if (kind === 'start') return run[0];
  if (kind === 'end') return run[run.length - 1];
  return run[Math.floor(run.length * (e.type === 'ellipse' ? 0.125 : 0.5))];
}

/**
 * The direction in which an entity runs at a place, of length 1.
 * @param {Entity} e @param {string} place @returns {Point}
 */
export function tangentAt(e, place) {
  const at = placePoint(e, place);
  if (!at) return [1, 0];
  const run = linesOf(e, place), [a, b] = run;
  const dx = b[0] - a[0], dy = b[1] - a[1], length = Math.hypot(dx, dy) || 1;
  return [dx / length, dy / length];
}

/**
 * Two points on the tangent.
 * @param {Entity} e @param {string} place @returns {[Point, Point]}
 */
function linesOf(e, place) {
  if (e.type === 'xline' || e.type === 'ray') return [[0, 0], /** @type {Point} */ (e.direction)];
  const pieces = piecesOf(e), at = /** @type {Point} */ (placePoint(e, place));
  const number = place.startsWith('segment:') ? Number(place.split(/[:.]/)[1]) : 0;
  const piece = pieces[Math.min(number, pieces.length - 1)];
  if (piece && piece.centre) return [at, [at[0] - (at[1] - piece.centre[1]), at[1] + (at[0] - piece.centre[0])]];
  if (piece) return [piece.from, piece.to];
  if (e.type === 'point' || e.type === 'text' || e.type === 'mtext') return [[0, 0], [1, 0]];
  const run = runOf(e), i = place === 'start' ? 1 : place === 'end' ? run.length - 1 : Math.floor(run.length / 2);
  return [run[i - 1], run[i]];
}

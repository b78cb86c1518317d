// What the page says, and how edits are written.

/** @typedef {import('./types').Point} Point */

/** @param {number} value @param {number} [digits] of which the first counts as the first that is not 0 */
export const spoken = (value, digits = 5) => String(Number(value.toPrecision(digits)));
/** @param {Point} p */
export const spokenPoint = (p) => `(${spoken(p[0])}, ${spoken(p[1])})`;
/**
 * A point or a way in an edit.
 * @param {Point} p
 */
export const written = (p) => `${p[0]},${p[1]}`;
/** @param {string} entity @param {string} place */
export const placeText = (entity, place) => (place === 'whole' ? entity : `${entity}.${place}`);
/** @param {number} count @param {string} noun */
export const counted = (count, noun) =>
  `${count} ${count === 1 ? noun : noun.endsWith('y') ? `${noun.slice(0, -1)}ies` : `${noun}${noun.endsWith('ch') ? 'es' : 's'}`}`;

/** @param {import('./types').Constraint} c */
export const placesOf = (c) => c.refs.map((ref) => placeText(ref.entity, ref.point)).join('  ');

/** @param {Point} a @param {Point} b */
const gap = (a, b) => Math.hypot(a[0] - b[0], a[1] - b[1]);

/** @param {import('./types').Entity} e */
export function kindInWords(e) {
  const name = { elliptical_arc: 'elliptical arc', xline: 'endless line', mtext: 'text' }[e.type] || e.type;
  return e.construction ? `construction ${name}` : name;
}

/**
 * What an entity is, in a few words.
 * @param {import('./types').Entity} e
 */
export function entityInWords(e) {
  const kind = kindInWords(e);
  if (e.start && e.end) return `${kind}, length ${spoken(gap(e.start, e.end))}`;
  if (e.radius !== undefined) return `${kind}, radius ${spoken(e.radius)}`;
  if (e.vertices) return `${e.closed ? 'closed ' : ''}${kind}, ${counted(e.vertices.length - (e.closed ? 0 : 1), 'segment')}`;
  if (e.text) return `${kind} “${e.text}”`;
  return kind;
}

/** @param {Record<string, number>} counts by word, in order */
export const listed = (counts) => Object.entries(counts).filter(([, n]) => n > 0).map(([word, n]) => `${n} ${word}`).join(', ');

/**
 * An element with text in it: names are never read as markup.
 * @template {keyof HTMLElementTagNameMap} K
 * @param {K} tag @param {string} [className] @param {string} [text] @returns {HTMLElementTagNameMap[K]}
 */
export function element(tag, className = '', text = '') {
  const made = document.createElement(tag);
  if (className) made.className = className;
  if (text) made.textContent = text;
  return made;
}

/**
 * The element that the page has under an id.
 * @template {HTMLElement} T @param {string} id @returns {T}
 */
export function byId(id) {
  return /** @type {T} */ (document.getElementById(id));
}

// Words that edits have a meaning for: a name that is one stands in quotes.
const TAKEN = new Set(`at to by and from about radius corner segments start end start mid centre whole keep times rows ring
  closed bulge degree major ratio through height rotation construction as anyway linked rounded window point points length
  steps driving measured`.split(/\s+/));

/**
 * A name as edits take it.
 * @param {string} name
 */
export function named(name) {
  if (/^[A-Za-z_][A-Za-z0-9_]*$/.test(name) && !TAKEN.has(name)) return name;
  const inside = name.replace(/[\\"\n\r\t]/g, (sign) => ({ '\\': '\\\\', '"': '\\"', '\n': '\\n', '\r': '\\r', '\t': '\\t' }[sign] || sign));
  return `"${inside}"`;
}

/**
 * A place as edits take it.
 * @param {string} entity @param {string} place
 */
export const placed = (entity, place) => (place === 'whole' ? named(entity) : `${named(entity)}.${place}`);

// What the pointer does beside pulling: one tool is in the hand at a time.

/**
 * @typedef {{
 *   look: (pick: import('./picking.js').Pick | null, p: import('./types').Point, at: import('./types').Point) => void,
 *   click: (pick: import('./picking.js').Pick | null, p: import('./types').Point) => void,
 *   finish: () => void,
 * }} Tool
 */
export {};

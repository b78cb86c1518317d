// A dimension's value, edited where it stands.

import { byId, element, named } from './words.js';

/**
 * Its value is edited where it stands.
 * @param {import('./window.js').Page} page @param {string} id
 */
export function openDimension(page, id) {
  const constraint = page.drawing.constraints.get(id);
  if (!constraint || constraint.value === undefined) return;
  const placed = page.painter.placed.find((each) => each.mark.id === id);
  const [x, y] = placed ? [placed.x, placed.y] : [page.view.width / 2, page.view.height / 2];
  const isAngle = page.kinds.get(constraint.type)?.isAngle, value = isAngle ? constraint.value * 180 / Math.PI : constraint.value;
  byId('above').focus();  // what was open closes
  const input = element('input');
  input.id = 'inline';
  input.setAttribute('aria-label', `value of ${id}; a number, or = and a formula`);
  input.value = constraint.formula ? `= ${constraint.formula}` : String(Number(value.toPrecision(12)));
  input.style.left = `${Math.max(4, Math.min(page.view.width - 140, x - 65))}px`;
  input.style.top = `${Math.max(4, Math.min(page.view.height - 34, y - 15))}px`;
  byId('stage').append(input);
  input.select();
  input.focus();
  input.addEventListener('keydown', async (event) => {
    event.stopPropagation();
    if (event.key === 'Escape') byId('above').focus();
    if (event.key !== 'Enter') return;
    const result = await page.edit(`set ${named(id)} ${input.value.trim()}`);
    if (result?.done) byId('above').focus();
  });
  input.addEventListener('blur', () => input.remove());
}

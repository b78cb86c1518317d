// What a page in a file of its own holds for its script.

/**
 * Large drawings are packed.
 * @param {HTMLElement} holder is empty afterwards
 * @returns {Promise<any>}
 */
export async function heldBy(holder) {
  const text = holder.textContent || '';
  holder.textContent = '';
  if (!holder.dataset.packed) return JSON.parse(text);
  const bytes = Uint8Array.from(atob(text), (letter) => letter.charCodeAt(0));
  const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream('gzip'));
  return JSON.parse(await new Response(stream).text());
}

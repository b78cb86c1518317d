// What this tab calls itself to the server: the same word when it is loaded again, another one in a copy of the tab.

const KEPT_AS = 'holdfast-tab';
const PATIENCE = 500;  // milliseconds: a page that is loaded again waits so long for the one before it to go

const freshName = () => Array.from(crypto.getRandomValues(new Uint8Array(8)), (byte) => byte.toString(16).padStart(2, '0')).join('');

/**
 * Takes a name for as long as this page is there.
 * @param {string} name @returns {Promise<boolean>} false: another tab has it, of which this one is a copy
 */
function isTaken(name) {
  return new Promise((done) => {
    const patience = new AbortController(), timer = setTimeout(() => patience.abort(), PATIENCE);
    const held = navigator.locks.request(`${KEPT_AS} ${name}`, { signal: patience.signal }, () => {
      clearTimeout(timer);
      done(true);
      return new Promise(() => {});
    });
    held.catch(() => done(false));
  });
}

/** @returns {Promise<string>} */
export async function tabName() {
  const kept = sessionStorage.getItem(KEPT_AS);
  if (kept && await isTaken(kept)) return kept;
  const name = freshName();
  sessionStorage.setItem(KEPT_AS, name);
  await isTaken(name);
  return name;
}

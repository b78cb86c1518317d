// Edits that are kept beside the file: of tabs that were closed, and of windows before this one.

import * as link from './link.js';
import { ask } from './files.js';
import { byId, counted, element } from './words.js';

/** @typedef {import('./window.js').Page} Page */
/** @typedef {import('./link.js').KeptEdits} Kept */

/** @param {number} time in milliseconds */
const spokenTime = (time) => new Date(time).toLocaleString(undefined, { dateStyle: 'medium', timeStyle: 'short' });

/** @param {Kept} kept */
function spokenSize(kept) {
  if (kept.edits !== undefined) return counted(kept.edits, 'edit');
  if (kept.isDropped) return 'of a drawing that was dropped here';
  if (kept.differs === undefined) return 'of another drawing, or nothing that can be read';
  return `${counted(kept.differs, 'thing')} not as in the file`;
}

export class KeptEdits {
  /** @param {Page} page */
  constructor(page) {
    this.page = page;
    byId('kept').addEventListener('click', () => void this.show());
  }

  /** Whether there are any beside those that are shown. */
  async look() {
    if (link.standsAlone) return;
    const count = (await this.#others()).length;
    byId('kept').hidden = count === 0;
    byId('kept').textContent = `Kept (${count})`;
  }

  async #others() {
    try {
      return (await link.kept()).filter((each) => !each.isOurs);
    } catch (failure) {
      return [];
    }
  }

  /** The list, to open or to delete. */
  async show() {
    if (document.querySelector('dialog[open]')) return;
    const dialog = element('dialog'), title = element('h2', '', 'Kept edits'), list = element('ul'), close = element('button', '', 'Close');
    title.id = 'kept-title';
    dialog.id = 'kept-dialog';
    dialog.setAttribute('aria-labelledby', title.id);
    list.setAttribute('aria-labelledby', title.id);
    close.type = 'button';
    close.addEventListener('click', () => dialog.close());
    const row = element('div', 'answers');
    row.append(close);
    dialog.append(title, element('p', '', 'What was not saved into the file is kept beside it.'), list, row);
    dialog.addEventListener('close', () => dialog.remove());
    await this.#fill(list, dialog);
    document.body.append(dialog);
    dialog.showModal();
  }

  /** @param {HTMLElement} list @param {HTMLDialogElement} dialog */
  async #fill(list, dialog) {
    const others = await this.#others();
    list.replaceChildren(...others.map((each) => this.#line(each, list, dialog)));
    if (!others.length) list.append(element('li', '', 'None are left.'));
  }

  /** @param {Kept} kept @param {HTMLElement} list @param {HTMLDialogElement} dialog */
  #line(kept, list, dialog) {
    const line = element('li'), words = element('div'), name = element('b', '', kept.name);
    words.append(name, element('span', '', `${spokenSize(kept)} · ${spokenTime(kept.time)}`));
    line.append(words);
    if (kept.isOpen) {
      line.append(element('i', '', 'open in another tab'));
      return line;
    }
    const button = (/** @type {string} */ label, /** @type {() => Promise<void>} */ what) => {
      const made = element('button', '', label);
      made.type = 'button';
      made.setAttribute('aria-label', `${label} ${kept.name}, ${spokenSize(kept)}, ${spokenTime(kept.time)}`);
      made.addEventListener('click', () => what().catch((failure) => this.page.complain(failure)));
      line.append(made);
    };
    button('Open', () => this.#open(kept, dialog));
    button('Delete', () => this.#forget(kept, list, dialog));
    return line;
  }

  /** @param {Kept} kept @param {HTMLDialogElement} dialog */
  async #open(kept, dialog) {
    const { page } = this, { done, error } = await link.goOnWith(kept.name);
    dialog.close();
    if (!done) return page.say(error, true);
    page.drawings = 0;  // another one is shown, and nothing of this one is of use
    await page.load();
    page.say(`${kept.name} is shown`);
  }

  /** @param {Kept} kept @param {HTMLElement} list @param {HTMLDialogElement} dialog */
  async #forget(kept, list, dialog) {
    const answer = await ask(`Delete ${kept.name}, ${spokenSize(kept)}? It cannot be brought back.`, [['delete', 'Delete it']]);
    if (answer !== 'delete') return;
    const { done, error } = await link.forget(kept.name);
    this.page.say(done ? `${kept.name} is deleted` : error, !done);
    await this.#fill(list, dialog);
    /** @type {HTMLElement | null} */ (dialog.querySelector('button'))?.focus();
    await this.look();
  }
}

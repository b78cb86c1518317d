// Whether the file has it all: what is not saved, what others have saved meanwhile, and the choices that there are then.

import * as link from './link.js';
import { ask } from './files.js';
import { byId, element } from './words.js';

/** @typedef {import('./window.js').Page} Page */

export class Saving {
  /** @param {Page} page */
  constructor(page) {
    this.page = page;
    this.isAsking = false;
    byId('save').addEventListener('click', () => void this.save());
  }

  /** @param {boolean} unsaved @param {boolean} canUndo @param {boolean} canRedo */
  show(unsaved, canUndo, canRedo) {
    const { page } = this, save = /** @type {HTMLButtonElement} */ (byId('save'));
    page.hasUnsaved = unsaved;
    byId('unsaved').hidden = !unsaved;
    /** @type {HTMLButtonElement} */ (byId('undo')).disabled = !canUndo;
    /** @type {HTMLButtonElement} */ (byId('redo')).disabled = !canRedo;
    save.disabled = !unsaved || !page.takesSaves;
    save.hidden = !page.takesSaves;
  }

  /**
   * What is there to know about the file when a drawing is shown.
   * @param {import('./types').State} state
   */
  tell(state) {
    if (state.takenUp) this.#notice('Edits that an earlier window had not saved were taken up again.', `Go back to ${state.file}`);
    this.#tellBehind(state.behind);
  }

  /** The file was written, here or elsewhere. */
  async heed() {
    const { behind } = await link.behind();
    this.#tellBehind(behind);
  }

  /** @param {string} words who has written the file since; empty: nobody */
  #tellBehind(words) {
    const { page } = this;
    if (!words) return;
    if (page.hasUnsaved) this.#notice(`${words[0].toUpperCase()}${words.slice(1)}. What you do here is not in it; saving asks first.`);
    else this.#notice(`${words[0].toUpperCase()}${words.slice(1)}.`, 'Show what it holds now');
  }

  /** @param {string} words @param {string} [goesBack] what the button says that shows the file's drawing */
  #notice(words, goesBack) {
    const { page } = this, notice = byId('notice'), button = element('button', '', goesBack);
    button.type = 'button';
    button.addEventListener('click', async () => {
      try {
        await link.discard();
        notice.hidden = true;
        await page.load();
      } catch (failure) {
        page.complain(failure);
      }
    });
    notice.className = '';
    notice.replaceChildren(words, ...(goesBack ? [button] : []));
    notice.hidden = false;
  }

  /** @returns {Promise<boolean>} whether the file has it all */
  async save() {
    if (this.isAsking) return false;
    this.isAsking = true;
    try {
      return await this.#write(false);
    } catch (failure) {
      this.page.complain(failure);
      return false;
    } finally {
      this.isAsking = false;
    }
  }

  /** @param {boolean} isOver what others have written @returns {Promise<boolean>} */
  async #write(isOver) {
    const { page } = this;
    if (!page.takesSaves) {
      page.saveAs.ask();
      return false;
    }
    const { done, error, asks } = await link.save(isOver);
    if (asks) return this.#choose(error);
    if (!done) return this.#refused(error);
    page.say('saved');
    this.isHeld();
    /** @type {HTMLButtonElement} */ (byId('save')).disabled = true;
    byId('notice').hidden = true;
    return true;
  }

  /** Some file has it all. */
  isHeld() {
    this.page.hasUnsaved = false;
    byId('unsaved').hidden = true;
  }

  /** @param {string} why */
  #refused(why) {
    this.page.say(why, true);
    return false;
  }

  /** @param {string} why others have written the file */
  async #choose(why) {
    const answer = await ask(`${why[0].toUpperCase()}${why.slice(1)}. Saving here would write over that.`,
                             [['copy', 'Download this drawing instead'], ['over', 'Save over it']]);
    if (answer === 'over') return this.#write(true);
    if (answer === 'copy') /** @type {HTMLElement} */ (document.querySelector('#copies a'))?.click();
    return this.#refused(answer === 'copy' ? 'downloaded, not saved' : `not saved: ${why}`);
  }
}

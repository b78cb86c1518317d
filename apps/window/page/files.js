// Drawings that are dropped on the page, or chosen with its button: they take the place of the one that is shown.

import * as link from './link.js';
import { byId, counted, element } from './words.js';

/** @typedef {import('./window.js').Page} Page */

const LARGEST = 64 * 1024 * 1024;  // bytes: the server takes no more
const ENDINGS = ['.json', '.dxf', '.svg', '.slvs', '.fcstd'];

/**
 * Asks, and waits for one of the answers; null for none.
 * @param {string} question @param {[string, string][]} answers by what they are called here, and in the question
 * @returns {Promise<string | null>}
 */
export function ask(question, answers) {
  const dialog = element('dialog'), words = element('p', '', question), row = element('div', 'answers');
  dialog.id = 'ask';
  words.id = 'ask-words';
  dialog.setAttribute('aria-labelledby', 'ask-words');
  for (const [name, label] of answers) {
    const button = element('button', '', label);
    button.type = 'button';
    button.addEventListener('click', () => dialog.close(name));
    row.append(button);
  }
  const cancel = element('button', '', 'Cancel');
  cancel.type = 'button';
  cancel.addEventListener('click', () => dialog.close());
  row.append(cancel);
  dialog.append(words, row);
  document.body.append(dialog);
  return new Promise((done) => {
    dialog.addEventListener('close', () => {
      dialog.remove();
      done(dialog.returnValue || null);
    });
    dialog.showModal();
  });
}

export class Files {
  /** @param {Page} page */
  constructor(page) {
    this.page = page;
    this.cover = byId('cover');
    this.isAsking = false;
    const carries = (/** @type {DragEvent} */ event) => Boolean(event.dataTransfer?.types.includes('Files'));
    document.addEventListener('dragover', (event) => {
      if (!carries(event)) return;
      event.preventDefault();
      this.cover.hidden = false;
    });
    document.addEventListener('dragleave', (event) => {
      if (!event.relatedTarget) this.cover.hidden = true;
    });
    document.addEventListener('drop', (event) => {
      if (!carries(event)) return;
      event.preventDefault();
      this.cover.hidden = true;
      void this.take([...(event.dataTransfer?.files || [])]);
    });
    const chooser = /** @type {HTMLInputElement} */ (byId('chooser'));
    byId('open').addEventListener('click', () => chooser.click());
    chooser.addEventListener('change', () => {
      void this.take([...(chooser.files || [])]);
      chooser.value = '';
    });
    byId('back').addEventListener('click', () => void this.#goBack());
  }

  /** @param {File[]} files */
  async take(files) {
    const [file] = files, { page } = this;
    if (!file || this.isAsking) return;
    if (files.length > 1) return page.say(`${counted(files.length, 'file')} at once: one drawing is shown at a time`, true);
    if (!ENDINGS.some((ending) => file.name.toLowerCase().endsWith(ending)))
      return page.say(`${file.name}: expected a drawing whose name ends in ${ENDINGS.join(', ')}`, true);
    if (file.size > LARGEST) return page.say(`${file.name} is larger than ${LARGEST / 1024 / 1024} MB; "holdfast open" takes it`, true);
    this.isAsking = true;
    try {
      if (await this.#mayLeave(file.name)) await this.#open(file, '');
    } catch (failure) {
      page.complain(failure);
    } finally {
      this.isAsking = false;
    }
  }

  /**
   * Whether the drawing that is shown may go; what is not saved of it is kept anyway.
   * @param {string} name of what comes
   */
  async #mayLeave(name) {
    const { page } = this;
    if (!page.hasUnsaved) return true;
    const kept = page.isReadOnly ? 'They stay in this window only' : 'They are kept beside the file until it is opened again';
    const answer = await ask(`Edits of ${page.file} are not saved. ${kept}.`, [
      ...(page.takesSaves ? /** @type {[string, string][]} */ ([['save', `Save, then open ${name}`]]) : []), ['keep', `Open ${name}`]]);
    return answer === 'keep' || (answer === 'save' && page.save());
  }

  /** @param {File} file @param {string} sketch @returns {Promise<void>} */
  async #open(file, sketch) {
    const { page } = this;
    page.say(`${file.name} is being read …`);
    const { done, error, remarks, sketches } = await link.drop(file, sketch);
    if (sketches) {
      const chosen = await ask(`${file.name} holds ${counted(sketches.length, 'sketch')}. Which one?`,
                               sketches.map(({ name, label }) => [name, label && label !== name ? `${name} “${label}”` : name]));
      return chosen ? this.#open(file, chosen) : page.say('');
    }
    if (!done) return page.say(error, true);
    await page.load();
    page.say([`${file.name} is shown`, ...(remarks || [])].join('; '));
  }

  async #goBack() {
    const { page } = this;
    try {
      const { done, error, remarks } = await link.back();
      if (!done) return page.say(error, true);
      await page.load();
      page.say([`${page.file} is shown again`, ...(remarks || [])].join('; '));
    } catch (failure) {
      page.complain(failure);
    }
  }
}

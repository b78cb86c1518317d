// A file of the drawing under another name or in another form: the browser keeps it where its downloads go.

import * as link from './link.js';
import { byId, element } from './words.js';

/** @typedef {import('./window.js').Page} Page */

const PATIENCE = 60000;  // milliseconds: by then the browser has the file
/** @type {Record<string, string>} */
const FORMS = { '.json': 'Holdfast', '.dxf': 'DXF', '.slvs': 'SolveSpace', '.fcstd': 'FreeCAD', '.svg': 'SVG, to look at', '.pdf': 'PDF, to print' };

/** @param {string} ending as people write it */
const inNames = (ending) => (ending === '.fcstd' ? '.FCStd' : ending);

export class SaveAs {
  /** @param {Page} page */
  constructor(page) {
    this.page = page;
    byId('save-as').addEventListener('click', () => this.ask());
  }

  /** Under which name, in which form. */
  ask() {
    if (link.standsAlone || document.querySelector('dialog[open]')) return;
    const { page } = this, dialog = element('dialog'), form = element('form'), row = element('div', 'answers');
    const name = this.#field('save-as-name', 'Name', element('input'));
    const forms = this.#field('save-as-form', 'Form', element('select'));
    for (const ending of page.forms) {
      const option = element('option', '', `${inNames(ending)} – ${FORMS[ending] || ending.slice(1)}${ending === page.forms[0] ? ', as it came' : ''}`);
      option.value = ending;
      forms.field.append(option);
    }
    name.field.value = page.file.replace(/#.*$/, '').replace(/\.[^.]*$/, '');
    name.field.required = true;
    name.field.autocomplete = 'off';
    const cancel = element('button', '', 'Cancel'), download = element('button', 'main', 'Download');
    cancel.type = 'button';
    cancel.addEventListener('click', () => dialog.close());
    row.append(download, cancel);
    form.append(name.label, forms.label, row);
    form.addEventListener('submit', (event) => {
      event.preventDefault();
      dialog.close();
      void this.#download(name.field.value.trim(), forms.field.value);
    });
    dialog.id = 'save-as-dialog';
    dialog.setAttribute('aria-label', 'Save as');
    dialog.append(form);
    dialog.addEventListener('close', () => dialog.remove());
    document.body.append(dialog);
    dialog.showModal();
    name.field.select();
  }

  /**
   * @template {HTMLElement} T
   * @param {string} id @param {string} words @param {T} field
   */
  #field(id, words, field) {
    const label = element('label', '', words);
    field.id = id;
    label.append(field);
    return { label, field };
  }

  /** @param {string} name @param {string} ending */
  async #download(name, ending) {
    const { page } = this, whole = name.toLowerCase().endsWith(ending) ? name : name + inNames(ending);
    try {
      const { file, notes } = await link.saveAs(ending), way = element('a');
      way.href = URL.createObjectURL(file);
      way.download = whole;
      way.click();
      setTimeout(() => URL.revokeObjectURL(way.href), PATIENCE);
      if (!page.takesSaves && !notes.length && ending !== '.svg' && ending !== '.pdf') page.saving.isHeld();
      page.say(notes.length ? `${whole} was downloaded; ${notes.join('; ')}` : `${whole} was downloaded`);
    } catch (failure) {
      page.complain(failure);
    }
  }
}

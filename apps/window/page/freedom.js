// What is free, what is too much: asked of the server after each edit, and told.

import * as link from './link.js';
import { byId, counted, element } from './words.js';

/** @typedef {import('./window.js').Page} Page */

const DELAY = 60;  // milliseconds: edits that follow one another are diagnosed once

export class FreedomAsked {
  /** @param {Page} page */
  constructor(page) {
    this.page = page;
  }

  ask() {
    clearTimeout(this.timer);
    this.timer = setTimeout(async () => {
      try {
        const freedom = await link.freedom();
        if (freedom.number === this.page.number) this.#take(freedom);
      } catch (failure) {
        if (!(failure instanceof link.Gone)) this.page.complain(failure);
      }
    }, DELAY);
  }

  /** @param {import('./types').Freedom} freedom */
  #take(freedom) {
    const { page } = this, { scene } = page;
    scene.freedom = freedom;
    scene.clashes = [...(freedom.conflicts || []).flat(), ...(freedom.broken || []).map((each) => each.id)];
    scene.clashing = new Set(scene.clashes.flatMap((id) => (page.drawing.constraints.get(id)?.refs || []).map((ref) => ref.entity)));
    page.panel.freedom = freedom;
    page.panel.fillConstraints();
    const state = byId('state');
    state.replaceChildren();
    if (freedom.error) state.textContent = freedom.error;
    else if (freedom.conflicts.length) state.append(element('b', '', 'contradictory'), ` · ${counted(freedom.conflicts.length, 'conflict')}`);
    else if (freedom.freedom === 0) state.append(element('b', '', 'fully defined'));
    else state.append(element('b', '', String(freedom.freedom)), ` ${freedom.freedom === 1 ? 'degree' : 'degrees'} of freedom`);
    page.painter.touchAll();
    page.paintSoon(true);
  }
}

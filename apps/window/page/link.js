// The way to the server: questions, edits, and news of what other tabs did.

import { heldBy } from './held.js';
import { tabName } from './tab.js';

/** Why the server did not answer. */
export class Gone extends Error {}

/** A page in a file of its own holds the answers itself. */
const held = document.getElementById('answers');
/** @type {Promise<Record<string, any>> | null} */
const answers = held && heldBy(held);
/** The page stands alone: it shows the drawing and takes no edits. */
export const standsAlone = answers !== null;

/** Each tab has a drawing of its own on the server. */
const tab = standsAlone ? Promise.resolve('') : tabName();
const REST = 200;  // milliseconds after which a hand that pulls has come to rest: it then sees all that becomes of it
const PAUSE = 4;  // milliseconds between two questions of a pull: no screen is drawn oftener, and the server answers no more

/**
 * @param {string} path
 * @param {RequestInit} [how]
 * @returns {Promise<any>}
 */
async function call(path, how) {
  if (answers && how) throw new Error('this page shows the drawing and does not edit it; "holdfast open" does');
  if (answers) return (await answers)[path.slice('ask/'.length)];
  return (await reach(path, how)).json();
}

/**
 * @param {string} path
 * @param {RequestInit} [how]
 */
async function reach(path, how) {
  let answer;
  try {
    answer = await fetch(path, { ...how, headers: { ...how?.headers, 'Holdfast-Tab': await tab } });
  } catch (failure) {
    throw new Gone('the program that shows this drawing has ended; what was not saved is kept beside the drawing');
  }
  if (!answer.ok) throw new Error((await answer.text()).trim() || `the server answered ${answer.status}`);
  return answer;
}

/** @param {string} name @param {object} [more] that the message holds */
function post(name, text = '', more = {}) {
  return call(`do/${name}`, {
    method: 'POST', headers: { 'Content-Type': 'application/json' }, body: JSON.stringify({ text, ...more }),
  });
}

/** @returns {Promise<import('./types').Language>} */
export const language = () => call('ask/language');
/** @returns {Promise<import('./types').State>} */
export const state = () => call('ask/state');
/** @returns {Promise<import('./types').Freedom>} */
export const freedom = () => call('ask/freedom');
/** @param {string} text @returns {Promise<import('./types').Result>} */
export const edit = (text) => post('edit', text);
/**
 * An edit that belongs to the one before; one that is refused leaves no trace.
 * @param {string} text @returns {Promise<import('./types').Result>}
 */
export const follow = (text) => post('follow', text);
/** @param {string} text @returns {Promise<import('./types').Result>} */
export const attempt = (text) => post('try', text);
/**
 * The same while somebody pulls; in large drawings a glimpse of what can be seen.
 * @param {string} text @param {import('./shapes.js').Box} seen @returns {Promise<import('./types').Result>}
 */
export const attemptPull = (text, seen) => post('pull', text, { seen });
/**
 * @param {boolean} isOver what others have written since the file was read
 * @returns {Promise<{done: boolean, error: string, asks?: boolean}>} whether one may write over it
 */
export const save = (isOver) => post('save', isOver ? 'over' : '');
/**
 * The drawing as a file of another form, and what is lost in it.
 * @param {string} ending @returns {Promise<{file: Blob, notes: string[]}>}
 */
export async function saveAs(ending) {
  const answer = await reach('do/saveas', { method: 'POST', headers: { 'Content-Type': 'application/json' }, body: JSON.stringify({ text: ending }) });
  return { file: await answer.blob(), notes: JSON.parse(answer.headers.get('Holdfast-Notes') || '[]') };
}
/** @returns {Promise<{behind: string}>} who has written the file since, in words */
export const behind = () => call('ask/behind');
/** @typedef {{done: boolean, error: string, remarks?: string[], sketches?: {name: string, label: string}[]}} Taken */
/**
 * Hands over a file that was dropped: its bytes, and the names that people have for it and for a sketch in it.
 * @param {File} file @param {string} sketch @returns {Promise<Taken>}
 */
export const drop = (file, sketch) => call(`do/drop?${new URLSearchParams({ name: file.name, sketch })}`, {
  method: 'POST', headers: { 'Content-Type': 'application/octet-stream' }, body: file,
});
/** @returns {Promise<Taken>} */
export const back = () => post('back');
/** @typedef {{name: string, time: number, edits?: number, differs?: number, isDropped: boolean, isOurs: boolean, isOpen: boolean}} KeptEdits */
/** @returns {Promise<KeptEdits[]>} edits that are kept beside the file, newest first */
export const kept = () => call('ask/kept');
/** @param {string} name @returns {Promise<{done: boolean, error: string}>} */
export const goOnWith = (name) => post('kept', name);
/** @param {string} name @returns {Promise<{done: boolean, error: string}>} */
export const forget = (name) => post('forget', name);
/** @returns {Promise<{done: boolean, error: string}>} */
export const discard = () => post('discard');

/**
 * The address of something that the server makes of this tab's drawing.
 * @param {string} path
 */
export const ours = async (path) => `${path}?tab=${await tab}`;

/**
 * @param {(number: number) => void} onNews the number of the drawing's state
 * @param {() => void} onWritten somebody has saved the file
 * @param {(isThere: boolean) => void} onLink whether the server can be reached
 */
export async function listen(onNews, onWritten, onLink) {
  if (standsAlone) return;
  const source = new EventSource(await ours('news'));
  let writes = -1;
  source.onopen = () => onLink(true);
  source.onerror = () => onLink(false);
  source.onmessage = (event) => {
    if (event.data !== 'over') {
      const [number, writesNow] = event.data.split(' ').map(Number), isWritten = writes >= 0 && writesNow !== writes;
      writes = writesNow;
      if (isWritten) onWritten();
      return onNews(number);
    }
    source.close();
    onLink(false);
  };
}

/**
 * Asks the latest question only: what comes while one is under way waits, and what waits gives way to what is newer.
 * What was answered by a glimpse is asked again as a whole when nothing newer has come for a while.
 */
export class Latest {
  /**
   * @param {(text: string) => Promise<import('./types').Result>} ask
   * @param {(result: import('./types').Result) => void} answer
   * @param {(failure: unknown) => void} fail
   * @param {(text: string) => Promise<import('./types').Result>} [askWhole] where glimpses are given
   */
  constructor(ask, answer, fail, askWhole) {
    this.ask = ask;
    this.askWhole = askWhole || ask;
    this.answer = answer;
    this.fail = fail;
    /** @type {string | null} */
    this.waiting = null;
    this.isBusy = false;
    this.round = 0;
    this.resting = 0;  // the timer that runs out when the hand has come to rest
    this.isWhole = false;
  }

  /** Nothing is under way, nor will be before something else is wanted. */
  get isSettled() {
    return !this.isBusy && this.waiting === null && !this.resting;
  }

  #wake() {
    clearTimeout(this.resting);
    this.resting = 0;
  }

  /** @param {string} text what was answered by a glimpse */
  #rest(text) {
    this.#wake();
    this.resting = window.setTimeout(() => {
      this.resting = 0;
      if (this.isBusy || this.waiting !== null) return;
      this.waiting = text;
      this.isWhole = true;
      this.#next();
    }, REST);
  }

  /** @param {string} text */
  want(text) {
    this.#wake();
    this.waiting = text;
    this.isWhole = false;
    if (!this.isBusy) this.#next();
  }

  /** What is still under way is of no more interest. */
  forget() {
    this.#wake();
    this.waiting = null;
    this.round += 1;
  }

  async #next() {
    this.isBusy = true;
    while (this.waiting !== null) {
      const text = this.waiting, round = this.round;
      this.waiting = null;
      const pause = new Promise((done) => setTimeout(done, PAUSE));
      try {
        const result = await (this.isWhole ? this.askWhole : this.ask)(text);
        if (round === this.round) this.answer(result);
        if (round === this.round && result.isGlimpse && this.waiting === null) this.#rest(text);
      } catch (failure) {
        if (round === this.round) this.fail(failure);
      }
      await pause;
    }
    this.isBusy = false;
  }
}

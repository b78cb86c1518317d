// Runs inside a report page: does what a reader does and writes what came of it into the document.
(function () {
  'use strict';
  const found = {};
  const pictures = Array.from(document.querySelectorAll('svg.picture'));
  const first = pictures[0], last = pictures[pictures.length - 1];
  const boxes = function () { return pictures.map(function (each) { return each.getAttribute('viewBox'); }); };
  const shown = function (element) { return getComputedStyle(element).display !== 'none'; };
  const centre = function (element) {
    const box = element.getBoundingClientRect();
    return { clientX: box.left + box.width / 2, clientY: box.top + box.height / 2 };
  };
  const fire = function (element, type, kind, more) {
    element.dispatchEvent(new kind(type, Object.assign({ bubbles: true, cancelable: true, pointerId: 1 }, more)));
  };
  const hotIn = function (root, selector) { return root.querySelectorAll(selector + '.hot').length; };

  found.pictures = pictures.length;
  found.wide = document.documentElement.scrollWidth > window.innerWidth;
  found.loud = document.querySelectorAll('.m.deleted, .m.pointed, .m.added').length;

  // Every value fits on its plate, whatever fonts are installed.
  found.texts = 0;
  found.tooWide = [];
  document.querySelectorAll('.m').forEach(function (mark) {
    const text = mark.querySelector('text'), plate = mark.querySelector('.plate');
    if (!text || !plate || !shown(mark)) return;
    ++found.texts;
    if (text.getBBox().width > plate.getBBox().width + 3) found.tooWide.push(text.textContent);
  });

  found.placesShown = Array.from(document.querySelectorAll('.constraints > tbody > .row.deleted > .on')).map(
    function (cell) { return cell.getClientRects().length; });

  const row = document.querySelector('.row.deleted, .row.pointed');
  if (row) {
    // A page that the browser has not given the keyboard yet is told nothing of its focus.
    const isHeard = document.hasFocus();
    row.focus();
    if (!isHeard) fire(row, 'focusin', FocusEvent, {});
    found.focusHot = hotIn(document, '.m');
    row.blur();
    if (!isHeard) fire(row, 'focusout', FocusEvent, {});
    found.focusCooled = hotIn(document, '.m');
    fire(row, 'pointerover', PointerEvent, {});
    found.rowHot = { row: row.classList.contains('hot'), marks: hotIn(document, '.m'), entities: hotIn(document, '.e'),
                     focus: first.classList.contains('focus') };
    fire(document.querySelector('h1'), 'pointerover', PointerEvent, {});
    found.cooled = hotIn(document, '.m') + hotIn(document, '.e') + hotIn(document, '.row');

    const mark = first.querySelector('.m.deleted:not(.cluster)');
    fire(mark, 'pointerover', PointerEvent, centre(mark));
    found.markHot = { rows: hotIn(document, '.row'), tip: document.getElementById('tip').textContent,
                      tipShown: !document.getElementById('tip').hidden };
    fire(document.querySelector('h1'), 'pointerover', PointerEvent, {});

    const hit = first.querySelector('.hit');
    fire(hit, 'pointerover', PointerEvent, centre(hit));
    found.entityHot = hotIn(document, '.e');
    fire(document.querySelector('h1'), 'pointerover', PointerEvent, {});
  }

  // Zoom keeps the signs' size, the pointer's place, and both pictures together.
  const home = boxes();
  const plate = first.querySelector('.m .plate');
  const sizeBefore = plate ? plate.getBoundingClientRect().width : 0;
  const at = centre(first);
  fire(first, 'wheel', WheelEvent, Object.assign({ deltaY: -60 }, at));
  found.plainWheelMoves = boxes()[0] !== home[0];
  fire(first, 'wheel', WheelEvent, Object.assign({ deltaY: -60, ctrlKey: true }, at));
  found.zoomed = boxes();
  found.zoomedWidth = parseFloat(boxes()[0].split(' ')[2]) / parseFloat(home[0].split(' ')[2]);
  found.signGrowth = plate ? plate.getBoundingClientRect().width / sizeBefore : 1;

  fire(last, 'pointerdown', PointerEvent, { button: 0, clientX: 300, clientY: 300 });
  try {
    fire(last, 'pointermove', PointerEvent, { clientX: 303, clientY: 300 });
  } finally {
    fire(last, 'pointerup', PointerEvent, { clientX: 303, clientY: 300 });
  }
  found.panned = boxes();

  found.hiddenAtHome = 0;
  document.querySelectorAll('.from2, .from4, .from8').forEach(function (each) { found.hiddenAtHome += 1; });
  for (let i = 0; i !== 6; ++i) fire(first, 'keydown', KeyboardEvent, { key: '+' });
  found.level = first.dataset.level;
  found.hiddenZoomedIn = 0;
  document.querySelectorAll('.from2, .from4, .from8').forEach(function (each) {
    if (!shown(each)) found.hiddenZoomedIn += 1;
  });
  found.firstClustersShown = Array.from(document.querySelectorAll('.at1')).filter(shown).length;
  fire(document.body, 'keydown', KeyboardEvent, { key: 'Escape' });
  found.backHome = boxes().join() === home.join();

  if (row) {
    row.click();
    const paper = first.getBoundingClientRect();
    const sign = centre(first.querySelector('.m.hot .plate'));
    found.pinned = { row: row.classList.contains('pinned'),
                     inView: sign.clientX > paper.left && paper.right > sign.clientX &&
                             sign.clientY > paper.top && paper.bottom > sign.clientY };
    fire(document.body, 'keydown', KeyboardEvent, { key: 'Escape' });
    found.unpinned = !row.classList.contains('pinned') && hotIn(document, '.m') === 0;

    document.querySelector('label[for=show-deleted]').click();
    const deleted = Array.from(document.querySelectorAll('.m.deleted, .row.deleted'));
    found.filtered = { deleted: deleted.filter(shown).length, all: deleted.length,
                       kept: Array.from(document.querySelectorAll('.m.kept')).filter(shown).length };
    document.querySelector('label[for=show-deleted]').click();
    found.unfiltered = deleted.filter(shown).length;
  }

  const result = document.createElement('pre');
  result.id = 'probe';
  result.textContent = JSON.stringify(found);
  document.body.appendChild(result);
})();

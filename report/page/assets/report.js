// Pan, zoom and highlighting. The page is complete without it.
(function () {
  'use strict';
  const pictures = Array.from(document.querySelectorAll('svg.picture'));
  const tip = document.getElementById('tip');
  const full = pictures[0].viewBox.baseVal;
  const home = { x: 0, y: 0, width: full.width, height: full.height };
  const levels = [1, 2, 4, 8, 16, 32];
  const deepest = 64, farthest = 0.5;
  let view = Object.assign({}, home);
  let pinned = null;

  document.body.classList.add('live');

  // --- Pan and zoom, the same in all pictures ---

  function show(next) {
    view = next;
    const zoom = home.width / view.width;
    const level = levels.filter(function (each) { return each <= zoom * 1.001; }).pop() || 1;
    pictures.forEach(function (picture) {
      picture.setAttribute('viewBox', [view.x, view.y, view.width, view.height].join(' '));
      picture.dataset.level = level;
      picture.style.setProperty('--k', 1 / zoom);
    });
  }

  function zoomAbout(x, y, factor) {
    const zoom = home.width / view.width;
    const wanted = Math.min(deepest, Math.max(farthest, zoom * factor));
    const shrink = zoom / wanted;
    show({ x: x - (x - view.x) * shrink, y: y - (y - view.y) * shrink,
           width: view.width * shrink, height: view.height * shrink });
  }

  function zoomCentre(factor) { zoomAbout(view.x + view.width / 2, view.y + view.height / 2, factor); }

  function panBy(dx, dy) { show({ x: view.x + dx, y: view.y + dy, width: view.width, height: view.height }); }

  function pointOf(picture, event) {
    const matrix = picture.getScreenCTM().inverse();
    return new DOMPoint(event.clientX, event.clientY).matrixTransform(matrix);
  }

  function addDragging(picture) {
    let last = null;
    let moved = 0;
    picture.addEventListener('pointerdown', function (event) {
      if (event.button !== 0 || event.pointerType === 'touch') return;
      last = event;
      moved = 0;
    });
    picture.addEventListener('pointermove', function (event) {
      if (!last) return;
      const was = pointOf(picture, last), is = pointOf(picture, event);
      moved += Math.abs(event.clientX - last.clientX) + Math.abs(event.clientY - last.clientY);
      if (moved > 4 && !picture.hasPointerCapture(event.pointerId)) picture.setPointerCapture(event.pointerId);
      last = event;
      panBy(was.x - is.x, was.y - is.y);
    });
    ['pointerup', 'pointercancel'].forEach(function (name) {
      picture.addEventListener(name, function () { last = null; });
    });
    picture.addEventListener('click', function (event) {
      if (moved > 4) event.stopImmediatePropagation();
    });
  }

  function addZooming(picture) {
    picture.addEventListener('wheel', function (event) {
      if (!event.ctrlKey && !event.metaKey) return;
      event.preventDefault();
      const at = pointOf(picture, event);
      zoomAbout(at.x, at.y, Math.exp(-Math.max(-60, Math.min(60, event.deltaY)) * 0.006));
    }, { passive: false });
    picture.addEventListener('dblclick', function (event) {
      const at = pointOf(picture, event);
      zoomAbout(at.x, at.y, event.shiftKey ? 0.5 : 2);
    });
    picture.addEventListener('keydown', function (event) {
      const step = view.width / 12;
      const actions = {
        ArrowLeft: function () { panBy(-step, 0); }, ArrowRight: function () { panBy(step, 0); },
        ArrowUp: function () { panBy(0, -step); }, ArrowDown: function () { panBy(0, step); },
        '+': function () { zoomCentre(1.5); }, '=': function () { zoomCentre(1.5); },
        '-': function () { zoomCentre(1 / 1.5); }, '0': function () { show(Object.assign({}, home)); }
      };
      if (!actions[event.key] || event.ctrlKey || event.metaKey) return;
      event.preventDefault();
      actions[event.key]();
    });
  }

  function addButtons(picture) {
    const tools = document.createElement('div');
    tools.className = 'tools';
    [['\u2212', 'Zoom out', function () { zoomCentre(1 / 1.5); }],
     ['+', 'Zoom in', function () { zoomCentre(1.5); }],
     ['Fit', 'Show all', function () { show(Object.assign({}, home)); }]].forEach(function (entry) {
      const button = document.createElement('button');
      button.type = 'button';
      button.textContent = entry[0];
      button.title = entry[1];
      button.setAttribute('aria-label', entry[1]);
      button.addEventListener('click', entry[2]);
      tools.appendChild(button);
    });
    picture.closest('figure').querySelector('figcaption').appendChild(tools);
  }

  // --- What belongs together: rows, marks and entities by their ids ---

  function tokens(element, name) {
    const text = element.getAttribute(name);
    return text ? text.split(' ') : [];
  }

  function indexBy(name) {
    const index = new Map();
    document.querySelectorAll('[' + name + ']').forEach(function (element) {
      tokens(element, name).forEach(function (id) {
        if (!index.has(id)) index.set(id, []);
        index.get(id).push(element);
      });
    });
    return index;
  }

  // Thin lines are hard to hit: each gets a broad, unseen twin below the marks.
  pictures.forEach(function (picture) {
    picture.querySelectorAll('path.e').forEach(function (path) {
      const hit = path.cloneNode(false);
      hit.setAttribute('class', 'hit');
      path.parentNode.appendChild(hit);
    });
  });

  const marks = indexBy('data-c');
  const entities = indexBy('data-e');
  const rows = new Map();
  document.querySelectorAll('.row').forEach(function (row) { rows.set(row.getAttribute('data-c'), row); });
  let hot = [];

  function cool() {
    hot.forEach(function (element) { element.classList.remove('hot'); });
    pictures.forEach(function (picture) { picture.classList.remove('focus'); });
    hot = [];
  }

  function heat(element) {
    if (element.classList.contains('hit') || element.classList.contains('hot')) return;
    element.classList.add('hot');
    hot.push(element);
  }

  function highlight(constraints, lone) {
    cool();
    constraints.forEach(function (id) {
      (marks.get(id) || []).forEach(heat);
      const row = rows.get(id);
      if (row) tokens(row, 'data-e').forEach(heatEntity);
    });
    lone.forEach(heatEntity);
    pictures.forEach(function (picture) { picture.classList.toggle('focus', hot.length > 0); });
  }

  function heatEntity(id) {
    (entities.get(id) || []).forEach(function (element) {
      if (!element.classList.contains('row')) heat(element);
    });
  }

  function subjectOf(element) {
    const owner = element.closest('[data-c], [data-e]');
    if (!owner) return null;
    return { owner: owner, constraints: tokens(owner, 'data-c'),
             lone: owner.hasAttribute('data-c') ? [] : tokens(owner, 'data-e') };
  }

  function highlightSubject(subject) {
    if (subject) highlight(subject.constraints, subject.lone);
    else cool();
  }

  function describe(subject) {
    const lines = subject.constraints.slice(0, 6).map(function (id) {
      const row = rows.get(id);
      if (!row) return id;
      const part = function (name) { const cell = row.querySelector('.' + name); return cell ? cell.textContent : ''; };
      const why = part('why');
      return part('id') + '  ' + part('kind') + '  ' + part('on') + '\n' + part('fate') + (why ? ': ' + why : '');
    });
    if (subject.constraints.length > 6) lines.push('and ' + (subject.constraints.length - 6) + ' more');
    return lines.concat(subject.lone.map(decodeURIComponent)).join('\n');
  }

  function showTip(subject, event) {
    tip.textContent = describe(subject);
    tip.hidden = false;
    const left = Math.min(event.clientX + 14, window.innerWidth - tip.offsetWidth - 8);
    const above = event.clientY + 18 + tip.offsetHeight > window.innerHeight;
    tip.style.left = Math.max(8, left) + 'px';
    tip.style.top = (above ? event.clientY - tip.offsetHeight - 12 : event.clientY + 18) + 'px';
  }

  // --- Bringing a row's subject into view ---

  function boxOf(subject) {
    let box = null;
    const all = subject.constraints.flatMap(function (id) {
      const row = rows.get(id);
      return (marks.get(id) || []).concat(row ? tokens(row, 'data-e').flatMap(elementsOf) : []);
    }).concat(subject.lone.flatMap(elementsOf));
    all.forEach(function (element) {
      const picture = element.closest('svg.picture');
      if (!picture || element.classList.contains('unbounded')) return;
      const own = element.getBBox();
      const shift = element.transform.baseVal.consolidate();
      const x = own.x + (shift ? shift.matrix.e : 0), y = own.y + (shift ? shift.matrix.f : 0);
      box = box || { left: x, top: y, right: x, bottom: y };
      box.left = Math.min(box.left, x);
      box.top = Math.min(box.top, y);
      box.right = Math.max(box.right, x + own.width);
      box.bottom = Math.max(box.bottom, y + own.height);
    });
    return box;
  }

  function elementsOf(id) { return entities.get(id) || []; }

  function bringIntoView(subject) {
    const box = boxOf(subject);
    if (!box) return;
    const zoom = Math.min(8, Math.max(1, 0.5 * Math.min(home.width / (box.right - box.left + 1),
                                                        home.height / (box.bottom - box.top + 1))));
    const width = home.width / zoom, height = home.height / zoom;
    show({ x: (box.left + box.right - width) / 2, y: (box.top + box.bottom - height) / 2,
           width: width, height: height });
  }

  function pin(subject) {
    if (pinned) pinned.owner.classList.remove('pinned');
    pinned = subject;
    if (subject) subject.owner.classList.add('pinned');
    highlightSubject(subject);
  }

  document.addEventListener('pointerover', function (event) {
    const subject = event.target.closest ? subjectOf(event.target) : null;
    highlightSubject(subject || pinned);
    if (subject && event.target.closest('svg.picture')) showTip(subject, event);
    else tip.hidden = true;
  });
  document.addEventListener('focusin', function (event) {
    const subject = subjectOf(event.target);
    if (subject) highlightSubject(subject);
  });
  document.addEventListener('focusout', function () { highlightSubject(pinned); });
  document.addEventListener('click', function (event) {
    const subject = subjectOf(event.target);
    if (!subject) {
      if (event.target.closest('svg.picture')) pin(null);
      return;
    }
    pin(subject);
    if (subject.owner.matches('.row, .erow, .ids span')) bringIntoView(subject);
  });
  document.addEventListener('keydown', function (event) {
    const row = event.target.closest ? event.target.closest('.row, .erow') : null;
    if (event.key === 'Escape') {
      pin(null);
      show(Object.assign({}, home));
    } else if (row && (event.key === 'Enter' || event.key === ' ')) {
      event.preventDefault();
      row.click();
    }
  });

  // The page's own words come as tips; the browser's would lie on top of them.
  document.querySelectorAll('svg.picture title').forEach(function (title) { title.remove(); });
  pictures.forEach(addDragging);
  pictures.forEach(addZooming);
  pictures.forEach(addButtons);
  show(view);
})();

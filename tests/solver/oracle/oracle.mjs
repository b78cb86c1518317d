// Compares the evaluator's solutions with those of an independent solver on the same figures:
//
//     node oracle.mjs <program solver_cases> <folder with the solver's package>
//
// Each must accept the other's solution, and ours may not move farther than the other's.
import { execFileSync } from "node:child_process";
import { join } from "node:path";
import { pathToFileURL } from "node:url";

const kHolds = 1e-8; // residuals, as a part of the figure's size
const kOtherHolds = 1e-6;
const kStays = 1e-6;

const [program, folder] = process.argv.slice(2);
const entry = join(folder, "node_modules", "@salusoft89", "planegcs", "dist", "index.js");
const { init_planegcs_module, GcsWrapper } = await import(pathToFileURL(entry));
const module = await init_planegcs_module();

const distance = (v, a, b) => Math.hypot(v[b] - v[a], v[b + 1] - v[a + 1]);
const direction = (v, a, b) => [(v[b] - v[a]) / distance(v, a, b), (v[b + 1] - v[a + 1]) / distance(v, a, b)];

// Where a place of an element begins among the values: lines are x1 y1 x2 y2, arcs cx cy r, start, end.
function pointOf(figure, ref) {
  const entity = figure.entities[ref.entity];
  const ends = entity.first + (entity.kind === "arc" ? 3 : 0);
  return ref.place === "end" ? ends + 2 : ends;
}

function lineAndArc(figure, refs) {
  const isArc = (ref) => figure.entities[ref.entity].kind === "arc";
  return isArc(refs[0]) ? [refs[1], refs[0]] : refs;
}

// Sine of the angle between a line and an arc's radius-at-right-angles where they meet; and whether both run the same way.
function meeting(figure, refs, v) {
  const [line, arc] = lineAndArc(figure, refs);
  const from = figure.entities[line.entity].first;
  const d = direction(v, from, from + 2);
  const radial = direction(v, figure.entities[arc.entity].first, pointOf(figure, arc));
  return { off: d[0] * radial[0] + d[1] * radial[1], runsAlike: d[1] * radial[0] - d[0] * radial[1] > 0 };
}

// How far a constraint is from holding, as a length; by formulas of this file alone.
function residual(figure, constraint, v) {
  const [a, b] = constraint.refs;
  const first = figure.entities[a.entity].first;
  const second = b && figure.entities[b.entity].first;
  switch (constraint.type) {
    case "coincident":
      return distance(v, pointOf(figure, a), pointOf(figure, b));
    case "horizontal":
      return Math.abs(v[first + 3] - v[first + 1]);
    case "vertical":
      return Math.abs(v[first + 2] - v[first]);
    case "perpendicular": {
      const [p, q] = [direction(v, first, first + 2), direction(v, second, second + 2)];
      return Math.abs(p[0] * q[0] + p[1] * q[1]) * distance(v, first, first + 2);
    }
    case "equal":
      return figure.entities[a.entity].kind === "arc"
        ? Math.abs(v[first + 2] - v[second + 2])
        : Math.abs(distance(v, first, first + 2) - distance(v, second, second + 2));
    case "tangent":
      return Math.abs(meeting(figure, constraint.refs, v).off) * v[figure.entities[lineAndArc(figure, constraint.refs)[1].entity].first + 2];
    default:
      throw new Error(`no formula for ${constraint.type}`);
  }
}

function worstResidual(figure, v) {
  const ends = (entity) => (entity.kind === "arc" ? [entity.first + 3, entity.first + 5] : []);
  const rules = figure.entities.flatMap((e) => ends(e).map((p) => Math.abs(distance(v, e.first, p) - v[e.first + 2])));
  return Math.max(0, ...rules, ...figure.constraints.map((c) => residual(figure, c, v)));
}

function primitives(figure, start) {
  const v = [...start];
  const fixed = figure.edit?.value;
  if (fixed !== undefined) [v[fixed], v[fixed + 1]] = figure.edit.goal;
  const point = (value) => ({ id: `p${value}`, type: "point", x: v[value], y: v[value + 1], fixed: value === fixed });
  const list = [];
  for (const e of figure.entities)
    list.push(...(e.kind === "arc" ? [e.first, e.first + 3, e.first + 5] : [e.first, e.first + 2]).map(point));
  figure.entities.forEach((e, i) => {
    if (e.kind === "line") {
      list.push({ id: `e${i}`, type: "line", p1_id: `p${e.first}`, p2_id: `p${e.first + 2}` });
      return;
    }
    const angle = (p) => Math.atan2(v[p + 1] - v[e.first + 1], v[p] - v[e.first]);
    const from = angle(e.first + 3);
    const to = angle(e.first + 5);
    list.push({
      id: `e${i}`, type: "arc", c_id: `p${e.first}`, radius: v[e.first + 2], start_angle: from,
      end_angle: to < from ? to + 2 * Math.PI : to, start_id: `p${e.first + 3}`, end_id: `p${e.first + 5}`,
    });
    list.push({ id: `r${i}`, type: "arc_rules", a_id: `e${i}` });
  });
  return list.concat(figure.constraints.map((c, i) => constraintOf(figure, c, `c${i}`)));
}

function constraintOf(figure, { type, refs }, id) {
  const [one, two] = refs.map((ref) => `e${ref.entity}`);
  switch (type) {
    case "coincident":
      return { id, type: "p2p_coincident", p1_id: `p${pointOf(figure, refs[0])}`, p2_id: `p${pointOf(figure, refs[1])}` };
    case "horizontal":
      return { id, type: "horizontal_l", l_id: one };
    case "vertical":
      return { id, type: "vertical_l", l_id: one };
    case "perpendicular":
      return { id, type: "perpendicular_ll", l1_id: one, l2_id: two };
    case "equal":
      return figure.entities[refs[0].entity].kind === "arc"
        ? { id, type: "equal_radius_aa", a1_id: one, a2_id: two }
        : { id, type: "equal_length", l1_id: one, l2_id: two };
    default: {
      // The sense in which the curves run is chosen by us: nought or half a turn.
      const [line, arc] = lineAndArc(figure, refs);
      const angle = meeting(figure, refs, figure.start).runsAlike ? 0 : Math.PI;
      return {
        id, type: "angle_via_point", crv1_id: `e${line.entity}`, crv2_id: `e${arc.entity}`,
        p_id: `p${pointOf(figure, arc)}`, angle,
      };
    }
  }
}

// The other solver's answer from a start, in our layout of values.
function solveOtherwise(figure, start) {
  const gcs = new GcsWrapper(new module.GcsSystem());
  gcs.set_convergence_threshold(1e-14);
  gcs.push_primitives_and_params(primitives(figure, start));
  const status = gcs.solve();
  gcs.apply_solution();
  const values = [...start];
  for (const p of gcs.sketch_index.get_primitives()) {
    if (p.type === "point") [values[+p.id.slice(1)], values[+p.id.slice(1) + 1]] = [p.x, p.y];
    if (p.type === "arc") values[figure.entities[+p.id.slice(1)].first + 2] = p.radius;
  }
  gcs.destroy_gcs_module();
  return { hasSolved: status === 0 || status === 1, values };
}

const movement = (figure, v) => Math.hypot(...v.map((x, i) => x - figure.start[i]));
const farthest = (a, b) => Math.max(...a.map((x, i) => Math.abs(x - b[i])));

const figures = JSON.parse(execFileSync(program, { maxBuffer: 1 << 28 }));
const others = {};
const failures = [];
for (const figure of figures) {
  const expect = (holds, what) => holds || failures.push(`${figure.name}: ${what}`);
  const other = solveOtherwise(figure, figure.start);
  const otherHolds = worstResidual(figure, other.values) / figure.size;
  const ours = worstResidual(figure, figure.values) / figure.size;
  expect(figure.solved, "we found no solution");
  expect(ours <= kHolds, `our solution is off by ${ours} of the size`);
  expect(other.hasSolved && otherHolds <= kOtherHolds, `the other solver found no solution to compare with (${otherHolds})`);
  others[figure.name] = other.values;
  const ratio = movement(figure, figure.values) / movement(figure, other.values);
  expect(ratio <= 1 + 1e-6, `we moved ${ratio} times as far as the other solver`);
  const again = solveOtherwise(figure, figure.values);
  const stir = farthest(again.values, figure.values) / figure.size;
  expect(again.hasSolved && stir <= kStays, `the other solver moves our solution by ${stir} of the size`);
  figure.ratio = ratio;
}
const moved = JSON.parse(execFileSync(program, ["resolve"], { input: JSON.stringify(others), maxBuffer: 1 << 28 }));
for (const figure of figures) {
  const stir = moved[figure.name] / figure.size;
  if (!(stir <= 1e-5)) failures.push(`${figure.name}: we move the other solver's solution by ${stir} of the size`);
  console.log(`${figure.name.padEnd(28)} ${String(figure.constraints.length).padStart(4)} constraints, movement ` +
    `${figure.ratio.toFixed(4)} of the other's`);
}
console.log(`${figures.length} figures compared, ${failures.length} complaints`);
failures.forEach((failure) => console.log(failure));
process.exit(failures.length === 0 ? 0 : 1);

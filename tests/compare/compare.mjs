// node compare.mjs PROGRAM CHARTS DATA_ROOT: see run.sh.
import fs from 'node:fs';
import path from 'node:path';
import { rgb } from 'd3-color';
import { readPicture } from './picture.mjs';
import { readScenegraph } from './scenegraph.mjs';

// The other program rounds ticks, bands and axes to whole pixels.
const kPixels = 1.05;
// Lines of text above or below their place are set by slightly different rules.
const kTextPixels = 7;
// Of 255: colour schemes are interpolated differently by a little.
const kColor = 6;
// Marks are looked for in this distance, in pixels.
const kCell = 10;
const kOpacity = 0.02;
const kMostShown = 6;

const isNear = (a, b, tolerance = kPixels) => Math.abs(a - b) <= tolerance;
const show = (list) => {
  const shown = list.slice(0, kMostShown).map((part) => (typeof part === 'number' ? Math.round(part * 10) / 10 : part));
  return JSON.stringify(shown) + (list.length > kMostShown ? ` and ${list.length - kMostShown} more` : '');
};

function sameNumbers(ours, theirs) {
  const sort = (list) => [...new Set(list.map((at) => Math.round(at * 100) / 100))].sort((a, b) => a - b);
  const [a, b] = [sort(ours), sort(theirs)];
  return a.length === b.length && a.every((at, i) => isNear(at, b[i]));
}

// The labels of a crowded axis that are shown depend on how texts are measured, what they say does not.
function missingLabels(ours, theirs) {
  return ours.filter((label) => !theirs.some((other) => other.text === label.text && isNear(other.at, label.at)));
}

function axesOf(facts, name, part) {
  return facts.axes.filter((axis) => axis.name === name && axis[part].length > 0);
}

function compareAxes(ours, theirs, report) {
  for (const name of ['x', 'y']) {
    for (const part of ['ticks', 'grid']) {
      const [a, b] = [axesOf(ours, name, part), axesOf(theirs, name, part)];
      const lonely = (from, to) => from.filter((axis) => !to.some((other) => sameNumbers(axis[part], other[part])));
      const [extra, missing] = [lonely(a, b), lonely(b, a)];
      report(`${name} ${part}`, extra.length + missing.length === 0,
             () => `${show(extra.flatMap((axis) => axis[part]))} for ${show(missing.flatMap((axis) => axis[part]))}`);
    }
    const [a, b] = [axesOf(ours, name, 'labels'), axesOf(theirs, name, 'labels')];
    const wrong = a.filter((axis) => !b.some((other) => missingLabels(axis.labels, other.labels).length === 0));
    const isMissing = (b.length > 0) !== (a.length > 0);
    const nearest = (axis) => b.map((other) => missingLabels(axis.labels, other.labels)).sort((l, r) => l.length - r.length)[0] ?? [];
    report(`${name} labels`, wrong.length === 0 && !isMissing,
           () => `${show(wrong.flatMap((axis) => nearest(axis).map((label) => `${label.text} at ${label.at}`)))} of ${show(b.flatMap((axis) => axis.labels.map((label) => `${label.text} at ${label.at}`)))}`);
  }
}

function compareTexts(name, ours, theirs, report) {
  const clean = (list) => [...new Set(list.filter((text) => text !== ''))].sort();
  const [a, b] = [clean(ours), clean(theirs)];
  const lonely = (from, to) => from.filter((text) => !to.includes(text));
  report(name, lonely(a, b).length + lonely(b, a).length === 0, () => `${show(lonely(a, b))} for ${show(lonely(b, a))}`);
}

function sameColor(a, b) {
  const [left, right] = [a.color, b.color].map((color) => (color ? rgb(color) : null));
  if (!left || !right) return left === right || a.opacity === b.opacity;
  return ['r', 'g', 'b'].every((part) => isNear(left[part], right[part], kColor)) && isNear(a.opacity, b.opacity, kOpacity);
}

function samePlace(a, b) {
  if ((a.text === undefined) !== (b.text === undefined)) return false;
  if (a.text !== undefined) return a.text === b.text && isNear(a.x, b.x, kTextPixels) && isNear(a.y, b.y, kTextPixels);
  return ['x0', 'y0', 'x1', 'y1'].every((edge) => isNear(a[edge], b[edge]));
}

function distanceOf(a, b) {
  const parts = a.text !== undefined ? ['x', 'y'] : ['x0', 'y0', 'x1', 'y1'];
  return parts.reduce((sum, part) => sum + Math.abs(a[part] - b[part]), 0);
}

// Every mark is paired with one of its place, and of its colour where there is one.
function pairMarks(ours, theirs) {
  const center = (mark) => (mark.text === undefined ? [(mark.x0 + mark.x1) / 2, (mark.y0 + mark.y1) / 2] : [mark.x, mark.y]);
  const cell = (mark) => center(mark).map((at) => Math.floor(at / kCell));
  const cells = new Map();
  for (const mark of theirs) {
    const key = cell(mark).join();
    if (!cells.has(key)) cells.set(key, []);
    cells.get(key).push(mark);
  }
  const result = { extra: [], colored: [] };
  for (const mark of ours) {
    const [x, y] = cell(mark);
    let best = null;
    for (let dx = -1; dx <= 1; ++dx) {
      for (let dy = -1; dy <= 1; ++dy) {
        const list = cells.get(`${x + dx},${y + dy}`) ?? [];
        list.forEach((other, i) => {
          if (!samePlace(mark, other)) return;
          const isSame = sameColor(mark.paint, other.paint);
          const distance = distanceOf(mark, other) + (isSame ? 0 : 1000);
          if (!best || distance < best.distance) best = { list, i, other, isSame, distance };
        });
      }
    }
    if (!best) { result.extra.push(mark); continue; }
    best.list.splice(best.i, 1);
    if (!best.isSame) result.colored.push([mark.paint, best.other.paint]);
  }
  result.missing = [...cells.values()].flat();
  return result;
}

function compareMarks(ours, theirs, report) {
  const order = (facts) => facts.panes.filter((pane) => pane.marks.length > 0)
    .sort((a, b) => Math.round(a.at[1] - b.at[1]) || a.at[0] - b.at[0]);
  // What is drawn in nothing, or without extent, is not to be seen.
  const seen = (pane) => pane.marks.filter((mark) => mark.paint.color && mark.paint.opacity > 0 && mark.text !== '' &&
    (mark.text !== undefined || (isFinite(mark.x0) && (mark.x1 > mark.x0 || mark.y1 > mark.y0))));
  const [a, b] = [order(ours), order(theirs)];
  report('panes', a.length === b.length, () => `${a.length} for ${b.length}`);
  let [count, other] = [0, 0];
  const all = { extra: [], missing: [], colored: [] };
  for (let i = 0; i < Math.min(a.length, b.length); ++i) {
    const [mine, its] = [seen(a[i]), seen(b[i])];
    count += mine.length;
    other += its.length;
    const pairs = pairMarks(mine, its);
    for (const part of ['extra', 'missing', 'colored']) all[part].push(...pairs[part]);
  }
  const place = (mark) => (mark.text !== undefined ? `${mark.text} at ${mark.x.toFixed(1)},${mark.y.toFixed(1)}`
    : [mark.x0, mark.y0, mark.x1, mark.y1].map((at) => at.toFixed(1)).join(' '));
  const text = (paint) => `${rgb(paint.color).formatHex()}/${paint.opacity.toFixed(2)}`;
  report('marks', count === other, () => `${count} for ${other}`);
  report('places', all.extra.length + all.missing.length === 0,
         () => `${all.extra.length} of ${count}: ${show(all.extra.map(place))} for ${show(all.missing.map(place))}`);
  report('colours', all.colored.length === 0,
         () => `${all.colored.length}: ${show(all.colored.map(([mine, its]) => `${text(mine)} for ${text(its)}`))}`);
}

function compareFacts(ours, theirs, report) {
  compareAxes(ours, theirs, report);
  const texts = (facts) => [...facts.axes.map((axis) => axis.title), ...facts.headers];
  compareTexts('titles', texts(ours), texts(theirs), report);
  for (const part of ['title', 'labels']) {
    const list = (facts) => facts.legends.flatMap((legend) => legend[part]);
    compareTexts(`legend ${part}`, list(ours), list(theirs), report);
  }
  compareTexts('chart title', ours.title.split('\n'), theirs.title.split('\n'), report);
  compareMarks(ours, theirs, report);
}

function listDocuments(charts) {
  if (fs.statSync(charts).isFile()) return [charts];
  return fs.readdirSync(charts).filter((name) => name.endsWith('.vl.json')).sort().map((name) => path.join(charts, name));
}

async function compareDocument(program, document, dataRoot) {
  const found = [];
  const report = (aspect, isSame, tell) => found.push({ aspect, isSame, text: isSame ? '' : tell() });
  const failed = (who, error) => report(who, false, () => String(error.stderr ?? error.message).trim().split('\n')[0]);
  let ours, theirs;
  try { ours = readPicture(program, document, dataRoot); } catch (error) { failed('ours', error); }
  try { theirs = await readScenegraph(document, dataRoot); } catch (error) { failed('theirs', error); }
  if (ours && theirs) compareFacts(ours, theirs, report);
  return found;
}

const [program, charts, dataRoot] = process.argv.slice(2);
const meant = JSON.parse(fs.readFileSync(new URL('differences.json', import.meta.url)));
const matches = (pattern, name) => new RegExp(`^(${pattern.replaceAll('.', '\\.').replaceAll('*', '.*')})$`).test(name);
const totals = { same: 0, meant: 0, unexpected: 0 };
for (const document of listDocuments(charts)) {
  const name = path.basename(document, '.vl.json');
  const found = await compareDocument(program, document, dataRoot);
  const differing = found.filter((part) => !part.isSame);
  console.log(`${name.padEnd(34)} ${found.length - differing.length} of ${found.length} agree`);
  totals.same += found.length - differing.length;
  for (const part of differing) {
    const reason = meant.find((entry) => entry.charts.some((pattern) => matches(pattern, name)) &&
      entry.aspects.some((pattern) => matches(pattern, part.aspect)))?.reason;
    ++totals[reason ? 'meant' : 'unexpected'];
    console.log(`  ${reason ? 'meant ' : 'DIFFERS'} ${part.aspect}: ${reason ?? part.text}`);
  }
}
console.log(`${totals.same} agree, ${totals.meant} differ as they are meant to, ${totals.unexpected} unexpected`);
process.exitCode = totals.unexpected === 0 ? 0 : 1;

// What the grammar's own implementation draws, as facts: see facts.mjs.
import fs from 'node:fs';
import path from 'node:path';
import * as vega from 'vega';
import * as vegaLite from 'vega-lite';
import { boxOf } from './facts.mjs';

const inside = (mark) => mark.items.flatMap((group) => group.items ?? []);
const byRole = (marks, role) => marks.filter((mark) => mark.role === role).flatMap((mark) => mark.items);
const textOf = (item) => [item.text ?? ''].flat().join('\n');

function readAxis(mark) {
  return mark.items.map((axis) => {
    const isHorizontal = axis.orient === 'top' || axis.orient === 'bottom';
    const along = (item) => (isHorizontal ? item.x : item.y);
    const labels = byRole(axis.items, 'axis-label').map((item) => ({
      at: along(item),
      text: textOf(item),
      isShown: (item.opacity ?? 1) > 0,
    }));
    return {
      name: isHorizontal ? 'x' : 'y',
      title: byRole(axis.items, 'axis-title').map(textOf).join(),
      ticks: byRole(axis.items, 'axis-tick').map(along),
      grid: byRole(axis.items, 'axis-grid').map(along),
      labels,
    };
  });
}

function readLegend(mark) {
  const texts = { title: [], labels: [] };
  const visit = (items) => {
    for (const part of items) {
      if (part.role === 'legend-title') texts.title.push(...part.items.map(textOf));
      if (part.role === 'legend-label')
        texts.labels.push(...part.items.filter((item) => item.opacity !== 0).map(textOf));
      if (part.marktype === 'group') visit(inside(part));
    }
  };
  visit(inside(mark));
  return texts;
}

function paintOf(item) {
  const isVisible = (color) => color && color !== 'transparent' && color !== 'none';
  const opacity = item.opacity ?? 1;
  return isVisible(item.fill)
    ? { color: item.fill, opacity: opacity * (item.fillOpacity ?? 1) }
    : { color: isVisible(item.stroke) ? item.stroke : null, opacity: opacity * (item.strokeOpacity ?? 1) };
}

function symbolBox(item) {
  const bounds = new vega.Bounds();
  vega.pathSymbols(item.shape ?? 'circle').draw(vega.boundContext(bounds), item.size ?? 64);
  return boxOf([[item.x + bounds.x1, item.y + bounds.y1], [item.x + bounds.x2, item.y + bounds.y2]]);
}

function edgesOf(item) {
  const x2 = item.x2 ?? (item.x ?? 0) + (item.width ?? 0);
  const y2 = item.y2 ?? (item.y ?? 0) + (item.height ?? 0);
  return [[item.x ?? 0, item.y ?? 0], [x2, y2]];
}

function hasArea(item) {
  const [[x, y], [x2, y2]] = edgesOf(item);
  return x !== x2 && y !== y2;
}

function readMark(mark) {
  if (mark.items.length === 0) return [];
  switch (mark.marktype) {
    case 'line':
    case 'trail':
    case 'area': {
      const points = mark.items.filter((item) => item.defined !== false);
      const box = boxOf(points.flatMap((item) => (mark.marktype === 'area' ? edgesOf(item) : [[item.x, item.y]])));
      return [{ ...box, paint: paintOf(mark.items[0]) }];
    }
    case 'symbol':
      return mark.items.map((item) => ({ ...symbolBox(item), paint: paintOf(item) }));
    case 'text':
      return mark.items.map((item) => ({
        text: textOf(item), x: item.x + (item.dx ?? 0), y: item.y + (item.dy ?? 0), paint: paintOf(item),
      }));
    case 'shape':
      return mark.items.map((item) => ({
        ...boxOf([[item.bounds.x1, item.bounds.y1], [item.bounds.x2, item.bounds.y2]]),
        paint: paintOf(item),
      }));
    default:
      // A rectangle without extent in one direction is not to be seen, a rule is.
      return mark.items.filter((item) => mark.marktype !== 'rect' || hasArea(item)).map((item) => ({ ...boxOf(edgesOf(item)), paint: paintOf(item) }));
  }
}

function collect(group, origin, pane, facts, isWithin = false) {
  for (const mark of group.items ?? []) {
    if (mark.role === 'axis') facts.axes.push(...readAxis(mark));
    else if (mark.role === 'legend') facts.legends.push(readLegend(mark));
    else if (mark.role === 'title' && isWithin) facts.headers.push(...inside(mark).flatMap((part) => part.items.map(textOf)));
    else if (mark.role === 'title') facts.title = inside(mark).flatMap((part) => part.items.map(textOf)).join('\n');
    else if (mark.marktype !== 'group') {
      if (mark.role === 'mark') pane.marks.push(...readMark(mark));
      else if (/-title$|-label$/.test(mark.role)) facts.headers.push(...mark.items.map(textOf));
    } else {
      const isPane = mark.name === 'cell' || mark.name?.endsWith('_cell');
      for (const item of mark.items) {
        const at = [origin[0] + (item.x ?? 0), origin[1] + (item.y ?? 0)];
        const own = isPane ? { at, width: item.width, height: item.height, marks: [] } : pane;
        if (isPane) facts.panes.push(own);
        collect(item, at, own, facts, true);
      }
    }
  }
}

// Data lie beside the document or below the root, in either way of counting from it.
function findData(url, folders) {
  const places = folders.flatMap((folder) => [path.join(folder, url), path.join(folder, path.basename(url))]);
  const found = places.find((place) => fs.existsSync(place));
  if (!found) throw new Error(`${url} is not there`);
  return found;
}

export async function readScenegraph(document, dataRoot) {
  const spec = vegaLite.compile(JSON.parse(fs.readFileSync(document)), { logger: silent }).spec;
  const loader = vega.loader({ mode: 'file' });
  loader.load = async (url) => fs.promises.readFile(findData(url, [path.dirname(document), dataRoot]), 'utf8');
  const view = new vega.View(vega.parse(spec), { renderer: 'none', loader, logger: silent });
  await view.runAsync();
  const root = view.scenegraph().root.items[0];
  const facts = { title: '', axes: [], legends: [], headers: [], panes: [] };
  const whole = { at: [0, 0], width: view.width(), height: view.height(), marks: [] };
  collect(root, [0, 0], whole, facts);
  if (facts.panes.length === 0) facts.panes.push(whole);
  return facts;
}

const silent = { level: () => silent, error: (e) => { throw e; }, warn: () => silent, info: () => silent, debug: () => silent };

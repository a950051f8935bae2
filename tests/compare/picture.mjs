// What this program draws, read from its SVG, as facts: see facts.mjs.
import { execFileSync } from 'node:child_process';
import { DOMParser } from '@xmldom/xmldom';
import * as vega from 'vega';
import { boxOf } from './facts.mjs';

const childrenOf = (element) => [...element.childNodes].filter((node) => node.nodeType === 1);
const classOf = (element) => element.getAttribute('class') ?? '';
const number = (element, name) => Number(element.getAttribute(name) ?? 0);

function originOf(element) {
  const at = /translate\(([^,]+),([^)]+)\)/.exec(element.getAttribute('transform') ?? '');
  return at ? [Number(at[1]), Number(at[2])] : [0, 0];
}

function find(element, test) {
  return childrenOf(element).flatMap((child) => (test(child) ? [child] : find(child, test)));
}

// Attributes of the paint are inherited.
function attribute(element, name) {
  for (let at = element; at?.getAttribute; at = at.parentNode) {
    const value = at.getAttribute(name);
    if (value !== null && value !== '') return value;
  }
  return null;
}

function paintOf(element) {
  const opacity = Number(attribute(element, 'opacity') ?? 1);
  const fill = attribute(element, 'fill') ?? '#000';
  return fill !== 'none'
    ? { color: fill, opacity: opacity * Number(attribute(element, 'fill-opacity') ?? 1) }
    : { color: attribute(element, 'stroke'), opacity: opacity * Number(attribute(element, 'stroke-opacity') ?? 1) };
}

function pathBox(element) {
  const bounds = new vega.Bounds();
  vega.pathRender(vega.boundContext(bounds), vega.pathParse(element.getAttribute('d')), 0, 0);
  return boxOf([[bounds.x1, bounds.y1], [bounds.x2, bounds.y2]]);
}

const linesOf = (element) => {
  const lines = find(element, (child) => child.tagName === 'tspan');
  return (lines.length ? lines : [element]).map((line) => line.textContent).join('\n');
};

function readText(element) {
  const [x, y] = originOf(element);
  return { text: linesOf(element), x: x + number(element, 'x'), y: y + number(element, 'y'), paint: paintOf(element) };
}

// Texts are placed at their alphabetic line here, at the middle of the line there.
const kMiddleOfLine = 0.3462;

function centerLine(fact, text) {
  const degrees = /rotate\(([^)]+)\)/.exec(text.getAttribute('transform') ?? '')?.[1] ?? 0;
  const angle = Number(degrees) * Math.PI / 180;
  const up = kMiddleOfLine * Number(attribute(text, 'font-size'));
  return { ...fact, x: fact.x + up * Math.sin(angle), y: fact.y - up * Math.cos(angle) };
}

function readMarks(element, marks) {
  for (const child of childrenOf(element)) {
    const [x, y] = [number(child, 'x'), number(child, 'y')];
    const [cx, cy, r] = [number(child, 'cx'), number(child, 'cy'), number(child, 'r')];
    const add = (box) => marks.push({ ...box, paint: paintOf(child) });
    switch (child.tagName) {
      case 'g': readMarks(child, marks); break;
      case 'text': marks.push(centerLine(readText(child), child)); break;
      case 'circle': add(boxOf([[cx - r, cy - r], [cx + r, cy + r]])); break;
      case 'rect': add(boxOf([[x, y], [x + number(child, 'width'), y + number(child, 'height')]])); break;
      case 'path': {
        const isRule = /^(M[^MLHVCZz]+[LHV][^MLHVCZz]+)+$/.test(child.getAttribute('d')) && attribute(child, 'stroke');
        // Several rules are one path of many moves.
        if (!isRule) { add(pathBox(child)); break; }
        for (const part of child.getAttribute('d').match(/M[^M]+/g)) {
          const paint = { color: attribute(child, 'stroke'), opacity: Number(attribute(child, 'stroke-opacity') ?? 1) };
          marks.push({ ...pathBox({ getAttribute: () => part }), paint });
        }
      }
    }
  }
}

function isBold(element) { return attribute(element, 'font-weight') === '700'; }

function placeLabel(text, name) { return centerLine(readText(text), text)[name]; }

function readAxis(group) {
  const name = classOf(group).split(' ')[1][0];
  const path = childrenOf(group).find((child) => child.tagName === 'path');
  const coordinate = name === 'x' ? 1 : 2;
  // The line of the axis runs along it, ticks and grid lines across.
  const across = name === 'x' ? 'V' : 'H';
  const moves = [...(path?.getAttribute('d') ?? '').matchAll(/M(-?[\d.]+)[ ,]?(-?[\d.]+)([HV])/g)].filter((move) => move[3] === across);
  const texts = find(group, (child) => child.tagName === 'text');
  return {
    name,
    isGrid: classOf(group).startsWith('grid'),
    title: texts.filter(isBold).map(linesOf).join('\n'),
    lines: moves.map((move) => Number(move[coordinate])),
    labels: texts.filter((text) => !isBold(text)).map((text) => ({
      at: placeLabel(text, name), text: linesOf(text), isShown: true,
    })),
  };
}

// A grid of axis "y" stands before or after it.
function readAxes(parent) {
  const parts = childrenOf(parent).filter((child) => /^(axis|grid) /.test(classOf(child))).map(readAxis);
  return parts.map((part) => ({
    name: part.name, title: part.title, labels: part.labels,
    ticks: part.isGrid ? [] : part.lines,
    grid: part.isGrid ? part.lines : [],
  }));
}

export function readPicture(program, document, dataRoot) {
  const svg = execFileSync(program, ['render', document, '--data-root', dataRoot, '-o', '-'],
                           { maxBuffer: 1 << 28, stdio: ['ignore', 'pipe', 'pipe'] }).toString();
  const root = new DOMParser().parseFromString(svg, 'image/svg+xml').documentElement;
  const plot = find(root, (child) => classOf(child) === 'plot')[0];
  const parts = childrenOf(plot);
  const named = (name) => parts.filter((part) => classOf(part) === name);
  const panes = named('pane').length ? named('pane') : [plot];
  const texts = (groups) => groups.flatMap((group) => find(group, (child) => child.tagName === 'text'));
  const facts = { axes: [], legends: [], panes: [], headers: texts(named('header')) };
  for (const pane of panes) {
    const own = { at: pane === plot ? [0, 0] : originOf(pane), marks: [] };
    for (const layer of childrenOf(pane).filter((child) => classOf(child) === 'marks')) readMarks(layer, own.marks);
    facts.panes.push(own);
    facts.axes.push(...readAxes(pane));
    facts.headers.push(...texts(childrenOf(pane).filter((child) => child.tagName === 'g' && classOf(child) === '')),
                       ...childrenOf(pane).filter((child) => child.tagName === 'text'));
  }
  facts.headers = facts.headers.map(linesOf);
  facts.title = texts(named('title')).map(linesOf).join('\n');
  const legendTexts = texts(find(plot, (child) => classOf(child) === 'legend'));
  facts.legends = [{
    title: legendTexts.filter(isBold).map(linesOf),
    labels: legendTexts.filter((text) => !isBold(text)).map(linesOf),
  }];
  return facts;
}

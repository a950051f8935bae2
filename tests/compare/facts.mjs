// A picture as facts, the same from either program:
//   title            text
//   axes             {name: "x"|"y", title, ticks, grid, labels: [{at, text, isShown}]}; pixels of the pane
//   legends          {title: [text], labels: [text]}
//   headers          texts of panes, with the titles of axes that serve all of them
//   panes            {at, marks}, a mark being {x0, y0, x1, y1, paint} or {text, x, y, paint}

export function boxOf(points) {
  const xs = points.map((point) => point[0]);
  const ys = points.map((point) => point[1]);
  return { x0: Math.min(...xs), y0: Math.min(...ys), x1: Math.max(...xs), y1: Math.max(...ys) };
}

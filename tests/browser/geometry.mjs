// Reads figures back from what is drawn: run in the page, it returns plain data.

/** Every strip: its side, its parameter, its ticks and what is drawn, in pixels of the page. */
export function readStrips() {
  const screen = (element) => {
    const matrix = element.getScreenCTM();
    return (x, y) => ({x: matrix.a * x + matrix.e, y: matrix.d * y + matrix.f});
  };
  const moves = (element) => {
    if (!element) {
      return [];
    }
    const place = screen(element);
    return [...element.getAttribute("d").matchAll(/M(-?[\d.]+) (-?[\d.]+)/g)]
      .map(([, x, y]) => place(Number(x), Number(y)));
  };
  const holders = document.querySelectorAll(".panel .strips > div");
  return [...holders].map((holder) => {
    const plot = holder.querySelector("svg.strip");
    const box = plot.getBoundingClientRect();
    const panel = holder.closest(".panel");
    const axis = panel.querySelector("svg.axis");
    const ticks = (texts, place) => [...texts].map((text) => (
      {value: Number.parseFloat(text.textContent), place: place(text)}));
    const band = plot.querySelector(".band")?.getBoundingClientRect();
    return {
      side: holder.dataset.side,
      key: panel.querySelector("td.at-cursor").dataset.key,
      left: box.left,
      right: box.right,
      top: box.top,
      bottom: box.bottom,
      times: ticks(axis.querySelectorAll("text"),
        (text) => box.left + box.width * Number.parseFloat(text.getAttribute("x")) / 100),
      values: ticks(plot.querySelectorAll("text.y"),
        (text) => screen(plot)(0, Number(text.getAttribute("y"))).y),
      dots: moves(plot.querySelector(".dot")),
      rings: moves(plot.querySelector(".ring")),
      gaps: moves(plot.querySelector(".gap")),
      arrows: [...plot.querySelectorAll("use")].map((use) => ({
        x: box.left + box.width * Number.parseFloat(use.getAttribute("x")) / 100,
        isUp: use.getAttribute("href") === "#up",
      })),
      line: moves(plot.querySelector(".line"))[0]?.y,
      other: moves(plot.querySelector(".other"))[0]?.y,
      band: band ? {top: band.top, bottom: band.bottom} : undefined,
      isBinned: plot.querySelector(".range") !== null,
    };
  });
}

/** The line through the first and the last of an axis's ticks: from a number to its place. */
export function throughTicks(ticks) {
  const first = ticks.at(0);
  const last = ticks.at(-1);
  const slope = (last.place - first.place) / (last.value - first.value);
  return (value) => first.place + (value - first.value) * slope;
}

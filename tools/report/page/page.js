// Adds what only a script can: a cursor through every figure, the table of very many strides, and a
// button that saves the JSON. Every figure and every number is in the page without it.
(() => {
  "use strict";

  const source = document.getElementById("gait-statistics");
  const data = JSON.parse(source.textContent);

  // As the program rounds: a number half-way between two goes to the even one.
  function rounded(value, decimals) {
    if (value === null || value === undefined) {
      return "–";
    }
    if (Math.abs(value) >= 1e12) {
      return value.toExponential(decimals);
    }
    let text = value.toFixed(decimals);
    const half = Math.abs(value) * 10 ** decimals;
    if (half < 2 ** 52 && half % 1 === 0.5 && Math.floor(half) % 2 === 0 &&
        Math.floor(half) / 10 ** decimals < Math.abs(value)) {
      text = (Math.sign(value) * Math.floor(half) / 10 ** decimals).toFixed(decimals);
    }
    return /[1-9]/.test(text) ? text : text.replace("-", "");
  }

  // A walk of the JSON as this script uses it: strides as objects, and the parameters by their key.
  // The words for what became of a stride are the page's.
  function walkOf(json, words) {
    const cycles = json.two_feet_cycles;
    const parameters = {};
    for (const parameter of Object.values(json.parameters)) {
      parameters[parameter.parameter] ??= parameter;
    }
    const sides = json.strides.map((columns) => ({
      name: columns.foot,
      strides: columns.start.map((start, index) => ({
        index,
        start,
        end: columns.end[index],
        counts: columns.status[index] === "included",
        status: words.getAttribute(`data-${columns.status[index]}`),
        reason: columns.reason[index],
        partner: columns.partner[index],
        value: (key) => (columns.values[key] ? columns.values[key][index]
            : cycles[key][columns.two_feet_cycle[index]] ?? null),
      })),
    }));
    return {parameters, sides};
  }

  const middle = (stride) => (stride.start + stride.end) / 2;

  // Where the cursor can stand, in order of time: at a stride with its partner, or at one that has
  // none.
  function positionsOf(walk) {
    const [first, second] = walk.sides;
    const positions = first.strides.map((stride) => ({
      [first.name]: stride,
      ...(second && stride.partner !== null &&
          {[second.name]: second.strides[stride.partner]}),
    }));
    for (const stride of second ? second.strides : []) {
      if (stride.partner === null) {
        positions.push({[second.name]: stride});
      }
    }
    const start = (position) => Math.min(...Object.values(position).map((stride) => stride.start));
    return positions.sort((a, b) => start(a) - start(b));
  }

  function strideInWords(side, stride) {
    const reason = stride.reason ? `: ${stride.reason.replace(/[\n\r]+/g, " ")}` : "";
    const name = side[0].toUpperCase() + side.slice(1);
    return `${name} stride ${stride.index}, ${rounded(stride.start, 2)} to ` +
        `${rounded(stride.end, 2)} s, ${stride.status}${reason}`;
  }

  class Cursor {
    constructor(article, walk) {
      this.article = article;
      this.walk = walk;
      this.from = Number(article.dataset.from);
      this.to = Number(article.dataset.to);
      this.positions = positionsOf(walk);
      this.slider = article.querySelector(".cursor-bar input");
      this.output = article.querySelector(".cursor-bar output");
      this.cells = [...article.querySelectorAll("td.at-cursor")];
      this.marks = this.makeMarks();
      this.show();
    }

    // A mark in every strip and in each row of the time line.
    makeMarks() {
      const marks = [];
      const add = (side, place, height, y) => {
        const mark = document.createElementNS("http://www.w3.org/2000/svg", "rect");
        mark.setAttribute("class", "cursor");
        mark.setAttribute("y", y);
        mark.setAttribute("height", height);
        place.append(mark);
        marks.push({side, mark});
      };
      const holders = ".strips [data-side], .strips[data-side]";
      for (const holder of this.article.querySelectorAll(holders)) {
        const plot = holder.querySelector("svg.strip");
        add(holder.dataset.side, plot, plot.getAttribute("height"), 0);
      }
      for (const row of this.article.querySelectorAll(".time_line g")) {
        add(row.classList[0], row, 24, Number(row.querySelector("rect").getAttribute("y")) - 3);
      }
      return marks;
    }

    show() {
      for (const hidden of this.article.querySelectorAll(".cursor-bar, .at-cursor")) {
        hidden.hidden = false;
      }
      this.slider.max = this.positions.length - 1;
      this.slider.addEventListener("input", () => this.moveTo(Number(this.slider.value)));
      for (const event of ["pointermove", "pointerdown"]) {
        this.article.addEventListener(event, (at) => this.follow(at));
      }
      const firstThatCounts = this.positions.findIndex(
          (position) => Object.values(position).some((stride) => stride.counts));
      this.moveTo(Math.max(0, firstThatCounts));
    }

    // The stride at a position that a strip shows: of a foot, or of the two feet together.
    strideOf(side, position) {
      return side === "cycle" ? position.right ?? position.left : position[side];
    }

    follow(event) {
      const plot = event.target.closest?.("svg.strip, svg.time_line");
      const holder = event.target.closest?.("[data-side], .time_line");
      if (!plot || !holder) {
        return;
      }
      const box = plot.getBoundingClientRect();
      const time = this.from + (event.clientX - box.left) / box.width * (this.to - this.from);
      const side = holder.dataset.side ?? event.target.closest("g")?.classList[0] ?? "cycle";
      let nearest = 0;
      let least = Infinity;
      this.positions.forEach((position, place) => {
        const stride = this.strideOf(side, position);
        const distance = stride ? Math.abs(middle(stride) - time) : Infinity;
        if (distance < least) {
          [nearest, least] = [place, distance];
        }
      });
      this.moveTo(nearest);
    }

    moveTo(place) {
      const position = this.positions[place];
      this.slider.value = place;
      const words = Object.entries(position).map(([side, stride]) => strideInWords(side, stride));
      this.output.textContent = words.join("\n");
      this.output.title = this.output.textContent;
      this.slider.setAttribute("aria-valuetext",
          words.concat(this.shownValues(position)).join(". "));
      for (const {side, mark} of this.marks) {
        this.placeMark(mark, this.strideOf(side, position));
      }
      for (const cell of this.cells) {
        const stride = this.strideOf(cell.dataset.side, position);
        const {key} = cell.dataset;
        cell.textContent =
            stride ? rounded(stride.value(key), this.walk.parameters[key].decimals) : "";
      }
    }

    placeMark(mark, stride) {
      mark.setAttribute("visibility", stride ? "visible" : "hidden");
      if (stride) {
        const share = 100 / (this.to - this.from || 1);
        mark.setAttribute("x", `${(stride.start - this.from) * share}%`);
        mark.setAttribute("width", `${(stride.end - stride.start) * share}%`);
      }
    }

    // The values that a screen reader says: every one that is shown beside the strips.
    shownValues(position) {
      const rows = new Map();
      for (const cell of this.cells) {
        const {key, side} = cell.dataset;
        const value = this.strideOf(side, position)?.value(key);
        if (value !== null && value !== undefined) {
          const {description, unit, decimals} = this.walk.parameters[key];
          const row = rows.get(key) ?? {description, unit, values: []};
          row.values.push((side === "cycle" ? "" : `${side} `) + rounded(value, decimals));
          rows.set(key, row);
        }
      }
      return [...rows.values()].map(
          ({description, unit, values}) => `${description} ${values.join(", ")} ${unit}`);
    }
  }

  // The table of strides, so many rows at a time.
  class StrideTable {
    static rows = 200;

    constructor(details, walk, keys) {
      this.walk = walk;
      this.name = details.closest("article").querySelector(".largest").textContent;
      this.keys = keys;
      this.strides = walk.sides.flatMap(
          (side) => side.strides.map((stride) => ({side: side.name, stride})));
      this.holder = document.createElement("div");
      details.querySelector(".without-script").replaceWith(this.holder);
      details.addEventListener("toggle", () => details.open && this.showFrom(0), {once: true});
    }

    showFrom(first) {
      const last = Math.min(first + StrideTable.rows, this.strides.length);
      const table = document.createElement("table");
      this.addRow(table.createTHead(), "th", [
        "Foot", "Stride", "Start (s)", "End (s)", "Counts", "Reason", "Partner",
        ...this.keys.map((key) => `${this.walk.parameters[key].description} ` +
            `(${this.walk.parameters[key].unit})`),
      ]);
      const body = table.createTBody();
      for (const {side, stride} of this.strides.slice(first, last)) {
        this.addRow(body, "td", [
          side, stride.index, rounded(stride.start, 3), rounded(stride.end, 3), stride.status,
          stride.reason ?? "", stride.partner ?? "",
          ...this.keys.map((key) => rounded(stride.value(key), this.walk.parameters[key].decimals)),
        ]);
      }
      const scroll = document.createElement("div");
      scroll.className = "scroll";
      scroll.tabIndex = 0;
      scroll.setAttribute("role", "region");
      scroll.setAttribute("aria-label", `The values of every stride of ${this.name}`);
      scroll.append(table);
      this.holder.replaceChildren(this.pager(first, last), scroll);
    }

    addRow(part, tag, texts) {
      const row = part.insertRow();
      for (const text of texts) {
        const cell = document.createElement(tag);
        cell.textContent = text;
        if (tag === "th") {
          cell.scope = "col";
        }
        row.append(cell);
      }
    }

    pager(first, last) {
      const pager = document.createElement("p");
      const button = (text, target, isOff) => {
        const made = document.createElement("button");
        made.type = "button";
        made.textContent = text;
        made.disabled = isOff;
        made.addEventListener("click", () => {
          this.showFrom(target);
          this.holder.querySelector("button:not(:disabled)").focus();
        });
        return made;
      };
      pager.append(
          button("Before", Math.max(0, first - StrideTable.rows), first === 0),
          ` ${first + 1} to ${last} of ${this.strides.length} `,
          button("Next", last, last === this.strides.length));
      return pager;
    }
  }

  function offerJson() {
    const button = document.getElementById("save");
    button.hidden = false;
    button.addEventListener("click", () => {
      const link = document.createElement("a");
      link.href = URL.createObjectURL(new Blob([source.textContent], {type: "application/json"}));
      link.download = button.dataset.file;
      link.click();
      URL.revokeObjectURL(link.href);
    });
  }

  for (const article of document.querySelectorAll("article.walk")) {
    const walk = walkOf(data.walks[Number(article.dataset.walk)],
        article.querySelector(".cursor-bar"));
    const {cells} = new Cursor(article, walk);
    const details = article.querySelector("details.strides");
    if (details.querySelector(".without-script")) {
      new StrideTable(details, walk, [...new Set(cells.map((cell) => cell.dataset.key))]);
    }
  }
  offerJson();
})();

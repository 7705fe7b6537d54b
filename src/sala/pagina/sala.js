// The phones' page: joins the room with its code, keeps a seat by the token that the program gives, and
// shows the game as the program tells it. Every text from the program goes in as text, never as markup.
"use strict";
(function () {
  var CHAVE = "quizora_sala";
  var LETRAS = ["A", "B", "C", "D"];
  var AJUDAS = ["Pular (1ª)", "Pular (2ª)", "Pular (3ª)", "Dado", "Apóstolos", "Deus"];
  var PONTOS_DADO = { 1: [4], 2: [0, 8], 3: [0, 4, 8], 4: [0, 2, 6, 8], 5: [0, 2, 4, 6, 8], 6: [0, 2, 3, 5, 6, 8] };

  var ws = null, tentativas = 0, relogio = null;
  var admitido = false;          // the room accepted our code on this connection
  var assento = 0;               // our competitor seat, 0 while watching
  var quer = null;               // what the person chose to do next: "assistir" or a seat
  var estado = null;
  var ultimaVez = 0;

  function $(id) { return document.getElementById(id); }
  function guardado() {
    try { return JSON.parse(localStorage.getItem(CHAVE) || "{}") || {}; } catch (e) { return {}; }
  }
  function guarda(dados) {
    try { localStorage.setItem(CHAVE, JSON.stringify(dados)); } catch (e) { /* private mode: no memory */ }
  }
  function esquece() { try { localStorage.removeItem(CHAVE); } catch (e) { /* nothing kept */ } }

  function mostra(secao) {
    ["entrar", "lugares", "jogo"].forEach(function (s) { $(s).hidden = s !== secao; });
  }
  var avisoTempo = null;
  function avisa(texto) {
    var a = $("aviso");
    a.textContent = texto;
    a.hidden = !texto;
    clearTimeout(avisoTempo);
    if (texto) avisoTempo = setTimeout(function () { a.hidden = true; }, 4000);
  }
  function envia(obj) {
    if (ws && ws.readyState === 1) ws.send(JSON.stringify(obj));
  }
  function nomeDe(i) {
    var j = estado && estado.jogadores[i - 1];
    return j && j.nome ? j.nome : "Jogador " + i;
  }
  function pontos(n) { return Math.round(n).toLocaleString("pt-BR") + " pts"; }

  // ---- The connection: it comes back by itself after a sleep, a reload or a dropped Wi-Fi.
  function conecta() {
    var g = guardado();
    if (!g.codigo) { mostra("entrar"); return; }
    if (ws && (ws.readyState === 0 || ws.readyState === 1)) return;
    admitido = false;
    ws = new WebSocket("ws://" + location.host + "/sala");
    ws.onopen = function () {
      tentativas = 0;
      $("conexao").hidden = true;
      var g2 = guardado();
      if (g2.token) envia({ tipo: "retoma", codigo: g2.codigo, token: g2.token });
      else envia({ tipo: "entra", codigo: g2.codigo });
    };
    ws.onmessage = function (ev) {
      var m;
      try { m = JSON.parse(ev.data); } catch (e) { return; }
      if (m && typeof m === "object") recebe(m);
    };
    ws.onclose = function () {
      ws = null;
      if (!guardado().codigo) return;
      $("conexao").hidden = false;
      clearTimeout(relogio);
      relogio = setTimeout(conecta, Math.min(5000, 500 * Math.pow(2, tentativas++)));
    };
  }
  document.addEventListener("visibilitychange", function () {
    if (!document.hidden && !ws && guardado().codigo) { tentativas = 0; conecta(); }
  });

  function recebe(m) {
    if (m.tipo === "erro") {
      if (!admitido) {
        // The code was refused (a new game has a new code): back to the code.
        esquece();
        $("erroEntrar").textContent = m.texto;
        mostra("entrar");
        if (ws) ws.close();
      } else {
        avisa(m.texto);
      }
      return;
    }
    if (m.tipo === "sessao") {
      admitido = true;
      $("erroEntrar").textContent = "";
      var antes = assento;
      assento = m.assento | 0;
      var g = { codigo: m.codigo };
      if (assento > 0) { g.token = m.token; quer = assento; }
      else if (quer === "assistir") g.assistir = true;
      if (antes > 0 && assento === 0 && quer !== "assistir") quer = null;
      if (guardado().assistir && assento === 0) { g.assistir = true; quer = "assistir"; }
      guarda(g);
      desenha();
      return;
    }
    if (m.tipo === "estado") {
      estado = m;
      desenha();
    }
  }

  // ---- Drawing
  function desenha() {
    if (!admitido || !estado) return;
    $("papel").textContent = assento > 0 ? "Você: " + nomeDe(assento) : quer === "assistir" ? "Assistindo" : "";
    if (assento === 0 && quer !== "assistir") { desenhaLugares(); mostra("lugares"); return; }
    mostra("jogo");
    desenhaJogo();
  }

  function desenhaLugares() {
    var lista = $("listaLugares");
    lista.textContent = "";
    var n = estado.jogadores.length;
    $("lugaresAviso").textContent = n === 0
      ? "O anfitrião ainda está digitando os nomes dos jogadores. Aguarde, ou apenas assista."
      : "Toque no seu nome para jogar, ou apenas assista.";
    for (var i = 1; i <= n; i++) {
      var b = document.createElement("button");
      b.type = "button";
      b.className = "lugar";
      var ocupado = estado.jogadores[i - 1].celular;
      b.textContent = nomeDe(i) + (ocupado ? " (ocupado)" : "");
      b.disabled = ocupado;
      b.dataset.assento = i;
      b.addEventListener("click", function (ev) {
        quer = parseInt(ev.currentTarget.dataset.assento, 10);
        envia({ tipo: "senta", assento: quer });
      });
      lista.appendChild(b);
    }
  }

  function desenhaJogo() {
    var e = estado, minhaVez = assento > 0 && e.jogador === assento && (e.fase === "vez" || e.fase === "dado");
    var faixa = $("faixa");
    faixa.className = "faixa";
    var aviso = e.aviso.filter(function (t) { return t; }).join(" ");
    if (e.fase === "nomes") faixa.textContent = "Aguardando o início do jogo...";
    else if (e.fase === "fim") faixa.textContent = "Fim do jogo!";
    else if (e.fase === "resultado") {
      faixa.textContent = aviso || "Aguarde a próxima pergunta...";
      if (/PARAB/.test(aviso)) faixa.className = "faixa certo";
      else if (/ERRADO/.test(aviso)) faixa.className = "faixa errado";
    } else if (e.fase === "dado") faixa.textContent = "O dado está rolando...";
    else if (minhaVez) { faixa.textContent = "Sua vez! Escolha uma resposta."; faixa.className = "faixa minha"; }
    else faixa.textContent = "Vez de " + nomeDe(e.jogador);
    if (minhaVez && e.vez !== ultimaVez && navigator.vibrate) navigator.vibrate(200);
    if (minhaVez) ultimaVez = e.vez;

    var temPergunta = e.fase !== "nomes" && e.fase !== "fim" && !!e.pergunta;
    $("quadroPergunta").hidden = !temPergunta;
    $("pergunta").textContent = e.pergunta;
    $("valor").textContent = e.jogador ? nomeDe(e.jogador) + " — valendo " + pontos(e.valor) : "";

    var resp = $("respostas");
    resp.textContent = "";
    resp.hidden = !temPergunta;
    var podeResponder = minhaVez && e.fase === "vez";
    e.respostas.forEach(function (texto, k) {
      var b = document.createElement("button");
      b.type = "button";
      b.className = "resposta r" + k + (texto ? "" : " vazia");
      if (e.correta !== undefined && texto) b.className += texto === e.correta ? " correta" : " apagada";
      var letra = document.createElement("span");
      letra.className = "letra";
      letra.textContent = LETRAS[k];
      var t = document.createElement("span");
      t.textContent = texto || "—";
      b.appendChild(letra);
      b.appendChild(t);
      b.setAttribute("aria-label", LETRAS[k] + ": " + (texto || "eliminada"));
      b.disabled = !podeResponder || !texto;
      b.addEventListener("click", function () {
        if (!podeResponder) return;
        podeResponder = false;
        Array.prototype.forEach.call(resp.children, function (x) { x.disabled = true; });
        envia({ tipo: "responde", resposta: k, vez: e.vez });
      });
      resp.appendChild(b);
    });

    var aj = $("ajudas");
    aj.textContent = "";
    if (podeResponder) {
      e.ajudas.forEach(function (livre, i) {
        if (!livre) return;
        var b = document.createElement("button");
        b.type = "button";
        b.className = "ajuda";
        b.textContent = AJUDAS[i];
        b.addEventListener("click", function () {
          Array.prototype.forEach.call(aj.children, function (x) { x.disabled = true; });
          envia({ tipo: "ajuda", ajuda: i, vez: e.vez });
        });
        aj.appendChild(b);
      });
    }

    var dado = $("dado");
    dado.hidden = !(e.dado >= 1 && e.dado <= 6);
    if (!dado.hidden) {
      dado.textContent = "";
      for (var p = 0; p < 9; p++) {
        var s = document.createElement("span");
        if (PONTOS_DADO[e.dado].indexOf(p) >= 0) s.className = "on";
        dado.appendChild(s);
      }
      dado.setAttribute("aria-label", "Dado: " + e.dado);
    }

    var cl = $("classificacao");
    cl.hidden = e.fase !== "fim";
    var ol = $("listaClassificacao");
    ol.textContent = "";
    (e.classificacao || []).forEach(function (s, lugar) {
      var li = document.createElement("li");
      var a = document.createElement("span");
      a.textContent = (lugar + 1) + "º. " + nomeDe(s);
      var b = document.createElement("span");
      b.textContent = pontos(e.jogadores[s - 1] ? e.jogadores[s - 1].pontos : 0);
      li.appendChild(a);
      li.appendChild(b);
      ol.appendChild(li);
    });

    var corpo = $("placar").tBodies[0];
    corpo.textContent = "";
    e.jogadores.forEach(function (j, i) {
      var tr = document.createElement("tr");
      if (i + 1 === e.jogador && e.fase !== "fim" && e.fase !== "nomes") tr.className = "davez";
      if (!j.ativo) tr.className = "fora";
      [nomeDe(i + 1) + (i + 1 === assento ? " (você)" : ""), pontos(j.pontos), String(j.nivel)].forEach(function (t) {
        var td = document.createElement("td");
        td.textContent = t;
        tr.appendChild(td);
      });
      corpo.appendChild(tr);
    });
  }

  // ---- The person's choices
  $("formCodigo").addEventListener("submit", function (ev) {
    ev.preventDefault();
    var codigo = $("txtCodigo").value.replace(/\D/g, "");
    if (codigo.length !== 6) { $("erroEntrar").textContent = "O código da sala tem 6 números."; return; }
    guarda({ codigo: codigo });
    if (ws) { ws.onclose = null; ws.close(); ws = null; }
    tentativas = 0;
    conecta();
  });
  $("cmdAssistir").addEventListener("click", function () {
    quer = "assistir";
    var g = guardado();
    g.assistir = true;
    guarda(g);
    desenha();
  });
  $("cmdTrocar").addEventListener("click", function () {
    if (assento > 0) envia({ tipo: "levanta" });
    quer = null;
    var g = guardado();
    delete g.assistir;
    delete g.token;
    guarda(g);
    assento = 0;
    desenha();
  });

  conecta();
})();

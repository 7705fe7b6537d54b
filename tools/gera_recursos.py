#!/usr/bin/env python3
"""Gera os recursos gráficos e sonoros do Quizora.

Escreve, a partir de desenhos feitos em código (sem arquivos de origem):

  resources/Ícones/*.Ico / *.ico   ícones do Windows (32x32 e 16x16, BMP 32 bits
                                   BGRA com máscara AND; nada de PNG dentro do ICO)
  resources/Ícones/Quizora.png     ícone do programa em 128x128
  resources/linux/icones/          ícone da área de trabalho em 48, 128 e 256 pixels
                                   (PNG) e em SVG, o mesmo desenho
  resources/Ícones/Fundo N.jpg     quatro imagens de fundo de 1024x768
  resources/Sons/acerto.wav        acorde ascendente, curto e alegre
  resources/Sons/erro.wav          zumbido grave e descendente

Somente a biblioteca padrão do Python é usada.  A saída é determinística: rodar
o script duas vezes produz os mesmos bytes.  As imagens de fundo são desenhadas
em PPM numa pasta temporária e convertidas para JPEG pelo ImageMagick
(`convert` ou `magick`); sem o ImageMagick, os arquivos .jpg existentes ficam
como estão e o script avisa.  Os .jpg gerados são guardados no repositório, de
modo que a compilação do programa nunca precisa do ImageMagick.

Uso:  python3 tools/gera_recursos.py [--sem-fundos]
"""

import math
import os
import random
import shutil
import struct
import subprocess
import sys
import tempfile
import wave
import zlib
from array import array

RAIZ = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PASTA_ICONES = os.path.join(RAIZ, "resources", "Ícones")
PASTA_SONS = os.path.join(RAIZ, "resources", "Sons")


# ---------------------------------------------------------------------------
# Cores
# ---------------------------------------------------------------------------

def cor(texto, alfa=1.0):
    """'#rrggbb' -> (r, g, b, a) em 0..1."""
    texto = texto.lstrip("#")
    return (int(texto[0:2], 16) / 255.0, int(texto[2:4], 16) / 255.0,
            int(texto[4:6], 16) / 255.0, alfa)


def mistura(c0, c1, t):
    t = 0.0 if t < 0 else 1.0 if t > 1 else t
    return tuple(a + (b - a) * t for a, b in zip(c0, c1))


def degrade_linear(x0, y0, x1, y1, c0, c1):
    dx, dy = x1 - x0, y1 - y0
    comp = dx * dx + dy * dy
    def f(x, y):
        return mistura(c0, c1, ((x - x0) * dx + (y - y0) * dy) / comp)
    return f


def degrade_radial(cx, cy, raio, c0, c1):
    def f(x, y):
        return mistura(c0, c1, math.hypot(x - cx, y - cy) / raio)
    return f


# ---------------------------------------------------------------------------
# Formas (coordenadas normalizadas: 0..1 na largura e na altura, y para baixo)
# ---------------------------------------------------------------------------

class Forma:
    def caixa(self):
        return (0.0, 0.0, 1.0, 1.0)

    def dentro(self, x, y):
        raise NotImplementedError


class Circulo(Forma):
    def __init__(self, cx, cy, r):
        self.cx, self.cy, self.r2, self.r = cx, cy, r * r, r

    def caixa(self):
        return (self.cx - self.r, self.cy - self.r, self.cx + self.r, self.cy + self.r)

    def dentro(self, x, y):
        dx, dy = x - self.cx, y - self.cy
        return dx * dx + dy * dy <= self.r2


class Elipse(Forma):
    def __init__(self, cx, cy, rx, ry):
        self.cx, self.cy, self.rx, self.ry = cx, cy, rx, ry

    def caixa(self):
        return (self.cx - self.rx, self.cy - self.ry, self.cx + self.rx, self.cy + self.ry)

    def dentro(self, x, y):
        dx, dy = (x - self.cx) / self.rx, (y - self.cy) / self.ry
        return dx * dx + dy * dy <= 1.0


class Anel(Forma):
    """Coroa circular, opcionalmente só entre dois ângulos (graus, sentido horário
    na tela, 0 = direita, 90 = baixo)."""

    def __init__(self, cx, cy, r_int, r_ext, a0=None, a1=None):
        self.cx, self.cy, self.ri, self.re = cx, cy, r_int, r_ext
        self.a0, self.a1 = a0, a1

    def caixa(self):
        return (self.cx - self.re, self.cy - self.re, self.cx + self.re, self.cy + self.re)

    def dentro(self, x, y):
        dx, dy = x - self.cx, y - self.cy
        d = math.hypot(dx, dy)
        if d < self.ri or d > self.re:
            return False
        if self.a0 is None:
            return True
        ang = math.degrees(math.atan2(dy, dx))
        return (ang - self.a0) % 360.0 <= (self.a1 - self.a0)


class Poligono(Forma):
    def __init__(self, pontos):
        self.p = list(pontos)
        xs = [p[0] for p in self.p]
        ys = [p[1] for p in self.p]
        self.cx = (min(xs), min(ys), max(xs), max(ys))

    def caixa(self):
        return self.cx

    def dentro(self, x, y):
        d = False
        p = self.p
        j = len(p) - 1
        for i in range(len(p)):
            xi, yi = p[i]
            xj, yj = p[j]
            if (yi > y) != (yj > y):
                if x < (xj - xi) * (y - yi) / (yj - yi) + xi:
                    d = not d
            j = i
        return d


class Traco(Forma):
    """Segmento de reta com pontas arredondadas."""

    def __init__(self, x0, y0, x1, y1, largura):
        self.x0, self.y0, self.x1, self.y1 = x0, y0, x1, y1
        self.m = largura / 2.0
        self.dx, self.dy = x1 - x0, y1 - y0
        self.c2 = self.dx * self.dx + self.dy * self.dy

    def caixa(self):
        return (min(self.x0, self.x1) - self.m, min(self.y0, self.y1) - self.m,
                max(self.x0, self.x1) + self.m, max(self.y0, self.y1) + self.m)

    def dentro(self, x, y):
        if self.c2 == 0:
            t = 0.0
        else:
            t = ((x - self.x0) * self.dx + (y - self.y0) * self.dy) / self.c2
            t = 0.0 if t < 0 else 1.0 if t > 1 else t
        px, py = self.x0 + t * self.dx - x, self.y0 + t * self.dy - y
        return px * px + py * py <= self.m * self.m


class Retangulo(Forma):
    def __init__(self, x0, y0, x1, y1, raio=0.0):
        self.x0, self.y0, self.x1, self.y1, self.r = x0, y0, x1, y1, raio

    def caixa(self):
        return (self.x0, self.y0, self.x1, self.y1)

    def dentro(self, x, y):
        if x < self.x0 or x > self.x1 or y < self.y0 or y > self.y1:
            return False
        r = self.r
        if r <= 0:
            return True
        cx = min(max(x, self.x0 + r), self.x1 - r)
        cy = min(max(y, self.y0 + r), self.y1 - r)
        return (x - cx) ** 2 + (y - cy) ** 2 <= r * r


class Uniao(Forma):
    def __init__(self, *formas):
        self.f = formas

    def caixa(self):
        cs = [f.caixa() for f in self.f]
        return (min(c[0] for c in cs), min(c[1] for c in cs),
                max(c[2] for c in cs), max(c[3] for c in cs))

    def dentro(self, x, y):
        return any(f.dentro(x, y) for f in self.f)


class Diferenca(Forma):
    def __init__(self, a, b):
        self.a, self.b = a, b

    def caixa(self):
        return self.a.caixa()

    def dentro(self, x, y):
        return self.a.dentro(x, y) and not self.b.dentro(x, y)


class Intersecao(Forma):
    def __init__(self, a, b):
        self.a, self.b = a, b

    def caixa(self):
        ca, cb = self.a.caixa(), self.b.caixa()
        return (max(ca[0], cb[0]), max(ca[1], cb[1]), min(ca[2], cb[2]), min(ca[3], cb[3]))

    def dentro(self, x, y):
        return self.a.dentro(x, y) and self.b.dentro(x, y)


class Girada(Forma):
    """A forma girada de `graus` (sentido horário na tela) em torno de (cx, cy)."""

    def __init__(self, forma, graus, cx=0.5, cy=0.5):
        self.f, self.cx, self.cy = forma, cx, cy
        a = math.radians(graus)
        self.c, self.s = math.cos(a), math.sin(a)

    def caixa(self):
        x0, y0, x1, y1 = self.f.caixa()
        pts = []
        for x, y in ((x0, y0), (x1, y0), (x0, y1), (x1, y1)):
            dx, dy = x - self.cx, y - self.cy
            pts.append((self.cx + dx * self.c - dy * self.s, self.cy + dx * self.s + dy * self.c))
        return (min(p[0] for p in pts), min(p[1] for p in pts),
                max(p[0] for p in pts), max(p[1] for p in pts))

    def dentro(self, x, y):
        dx, dy = x - self.cx, y - self.cy
        return self.f.dentro(self.cx + dx * self.c + dy * self.s,
                             self.cy - dx * self.s + dy * self.c)


def estrela(cx, cy, r_ext, r_int, pontas, rng=None, variacao=0.0, giro=0.0):
    pts = []
    for i in range(pontas * 2):
        r = r_ext if i % 2 == 0 else r_int
        if rng is not None and variacao:
            r *= 1.0 + (rng.random() * 2 - 1) * variacao
        a = math.radians(giro) + math.pi * i / pontas
        pts.append((cx + r * math.cos(a), cy + r * math.sin(a)))
    return Poligono(pts)


# ---------------------------------------------------------------------------
# Tela com superamostragem
# ---------------------------------------------------------------------------

class Tela:
    def __init__(self, lado, sub=4):
        self.lado, self.sub = lado, sub
        self.N = lado * sub
        n = self.N * self.N
        self.r = [0.0] * n
        self.g = [0.0] * n
        self.b = [0.0] * n
        self.a = [0.0] * n

    def pinta(self, forma, c, opacidade=1.0):
        N = self.N
        x0, y0, x1, y1 = forma.caixa()
        i0, i1 = max(0, int(x0 * N) - 1), min(N, int(x1 * N) + 2)
        j0, j1 = max(0, int(y0 * N) - 1), min(N, int(y1 * N) + 2)
        fixo = not callable(c)
        if fixo:
            cr, cg, cb, ca = c
            ca *= opacidade
        R, G, B, A = self.r, self.g, self.b, self.a
        dentro = forma.dentro
        for j in range(j0, j1):
            y = (j + 0.5) / N
            base = j * N
            for i in range(i0, i1):
                x = (i + 0.5) / N
                if not dentro(x, y):
                    continue
                if not fixo:
                    cr, cg, cb, ca = c(x, y)
                    ca *= opacidade
                k = base + i
                inv = 1.0 - ca
                R[k] = cr * ca + R[k] * inv
                G[k] = cg * ca + G[k] * inv
                B[k] = cb * ca + B[k] * inv
                A[k] = ca + A[k] * inv

    def pixels(self):
        """Reduz a superamostragem: lista de linhas (de cima para baixo) de
        tuplas (r, g, b, a) em 0..255, cor não pré-multiplicada."""
        s, N, L = self.sub, self.N, self.lado
        area = float(s * s)
        linhas = []
        for y in range(L):
            linha = []
            for x in range(L):
                sr = sg = sb = sa = 0.0
                for j in range(y * s, y * s + s):
                    base = j * N
                    for i in range(x * s, x * s + s):
                        k = base + i
                        sr += self.r[k]
                        sg += self.g[k]
                        sb += self.b[k]
                        sa += self.a[k]
                a = sa / area
                if a <= 1e-6:
                    linha.append((0, 0, 0, 0))
                    continue
                linha.append((min(255, int(sr / sa * 255 + 0.5)),
                              min(255, int(sg / sa * 255 + 0.5)),
                              min(255, int(sb / sa * 255 + 0.5)),
                              min(255, int(a * 255 + 0.5))))
            linhas.append(linha)
        return linhas


# ---------------------------------------------------------------------------
# Desenhos dos ícones.  Cada função recebe a tela e `pequeno` (True para a
# imagem de 16x16, em que os traços ficam mais grossos).
# ---------------------------------------------------------------------------

def desenha_lapis(t, pequeno):
    e = 0.15 if pequeno else 0.11            # meia espessura do lápis
    y0, y1 = 0.5 - e, 0.5 + e
    borda = 0.035 if pequeno else 0.025
    giro = -45
    contorno = Poligono([(0.05, 0.5), (0.28, y0 - borda), (0.95, y0 - borda),
                         (0.95, y1 + borda), (0.28, y1 + borda)])
    t.pinta(Girada(contorno, giro), cor("#3b2a10"))
    t.pinta(Girada(Poligono([(0.08, 0.5), (0.28, y0), (0.28, y1)]), giro), cor("#f3cf96"))
    ponta = 0.07 if pequeno else 0.065
    t.pinta(Girada(Poligono([(0.08, 0.5), (0.08 + ponta * 1.5, 0.5 - ponta * 0.6),
                             (0.08 + ponta * 1.5, 0.5 + ponta * 0.6)]), giro), cor("#2b2b2b"))
    terco = (y1 - y0) / 3.0
    t.pinta(Girada(Retangulo(0.28, y0, 0.74, y0 + terco), giro), cor("#ffe066"))
    t.pinta(Girada(Retangulo(0.28, y0 + terco, 0.74, y1 - terco), giro), cor("#f5c518"))
    t.pinta(Girada(Retangulo(0.28, y1 - terco, 0.74, y1), giro), cor("#d39b00"))
    t.pinta(Girada(Retangulo(0.74, y0, 0.81, y1), giro),
            degrade_linear(0, 0, 0, 1, cor("#e0e0e8"), cor("#8a8a96")))
    if not pequeno:
        t.pinta(Girada(Retangulo(0.765, y0, 0.78, y1), giro), cor("#6e6e7a"))
    t.pinta(Girada(Retangulo(0.81, y0, 0.93, y1, e * 0.6), giro), cor("#f48fb1"))
    t.pinta(Girada(Retangulo(0.81, y0, 0.86, y1), giro), cor("#f48fb1"))


def desenha_ampulheta(t, pequeno):
    madeira = cor("#8b5a2b")
    escuro = cor("#5a3413")
    def meia_largura(y):
        d = abs(y - 0.5) / 0.31
        return 0.035 + 0.2 * (min(d, 1.0) ** 0.75)
    def vidro(margem):
        esq, dir_ = [], []
        n = 40
        for i in range(n + 1):
            y = 0.19 + 0.62 * i / n
            w = meia_largura(y) + margem
            esq.append((0.5 - w, y))
            dir_.append((0.5 + w, y))
        return Poligono(esq + dir_[::-1])
    borda = 0.045 if pequeno else 0.03
    t.pinta(vidro(borda), cor("#35506e"))
    forma_vidro = vidro(0.0)
    t.pinta(forma_vidro, cor("#dff3ff"))
    # areia de cima: a parte de baixo do bulbo superior
    t.pinta(Intersecao(forma_vidro, Retangulo(0, 0.33, 1, 0.5)), cor("#e9a93a"))
    # areia de baixo: um monte
    monte = Poligono([(0.2, 0.81), (0.5, 0.6), (0.8, 0.81)])
    t.pinta(Intersecao(forma_vidro, monte), cor("#e9a93a"))
    filete = 0.025 if pequeno else 0.014
    t.pinta(Retangulo(0.5 - filete, 0.48, 0.5 + filete, 0.68), cor("#e9a93a"))
    # colunas e tábuas
    col = 0.05 if pequeno else 0.04
    t.pinta(Retangulo(0.17, 0.14, 0.17 + col, 0.86), escuro)
    t.pinta(Retangulo(0.83 - col, 0.14, 0.83, 0.86), escuro)
    esp = 0.13 if pequeno else 0.1
    for y in (0.06, 0.94 - esp):
        t.pinta(Retangulo(0.1, y, 0.9, y + esp, 0.03), escuro)
        t.pinta(Retangulo(0.12, y + 0.02, 0.88, y + esp - 0.02, 0.02),
                degrade_linear(0, y, 0, y + esp, cor("#c58a4a"), madeira))


def desenha_relogio(t, pequeno):
    t.pinta(Circulo(0.5, 0.5, 0.47), cor("#15396b"))
    t.pinta(Circulo(0.5, 0.5, 0.45), degrade_linear(0.2, 0.1, 0.8, 0.9, cor("#4f8ad6"), cor("#1d4f91")))
    face = 0.35 if pequeno else 0.37
    t.pinta(Circulo(0.5, 0.5, face), degrade_radial(0.42, 0.4, 0.45, cor("#ffffff"), cor("#dfe6ee")))
    marcas = (0, 3, 6, 9) if pequeno else range(12)
    for h in marcas:
        a = math.radians(-90 + 30 * h)
        r0 = 0.27 if (h % 3 == 0) else 0.3
        larg = 0.06 if pequeno else (0.045 if h % 3 == 0 else 0.03)
        if pequeno:
            r0 = 0.25
        t.pinta(Traco(0.5 + r0 * math.cos(a), 0.5 + r0 * math.sin(a),
                      0.5 + 0.33 * math.cos(a), 0.5 + 0.33 * math.sin(a), larg), cor("#222233"))
    # 10h10
    ah = math.radians(-90 + 30 * (10 + 10 / 60.0))
    am = math.radians(-90 + 6 * 10)
    t.pinta(Traco(0.5, 0.5, 0.5 + 0.19 * math.cos(ah), 0.5 + 0.19 * math.sin(ah),
                  0.09 if pequeno else 0.065), cor("#1a1a2a"))
    t.pinta(Traco(0.5, 0.5, 0.5 + 0.28 * math.cos(am), 0.5 + 0.28 * math.sin(am),
                  0.075 if pequeno else 0.045), cor("#1a1a2a"))
    if not pequeno:
        asg = math.radians(-90 + 6 * 37)
        t.pinta(Traco(0.5 - 0.06 * math.cos(asg), 0.5 - 0.06 * math.sin(asg),
                      0.5 + 0.3 * math.cos(asg), 0.5 + 0.3 * math.sin(asg), 0.02), cor("#d32f2f"))
    t.pinta(Circulo(0.5, 0.5, 0.05 if pequeno else 0.04), cor("#d32f2f"))


def desenha_recuperar(t, pequeno):
    cx = cy = 0.5
    re_, ri = (0.37, 0.21) if pequeno else (0.39, 0.26)
    extra = 0.11 if pequeno else 0.08            # quanto a seta passa do arco
    comp_seta = 0.25 if pequeno else 0.19
    a_fim = 22.0
    rm = (re_ + ri) / 2
    def seta(margem):
        u = (math.cos(math.radians(a_fim)), math.sin(math.radians(a_fim)))
        tg = (u[1], -u[0])                   # sentido anti-horário na tela
        meia = (re_ - ri) / 2 + extra + margem
        base0 = (cx + (rm - meia) * u[0] - margem * tg[0] * 0.5, cy + (rm - meia) * u[1] - margem * tg[1] * 0.5)
        base1 = (cx + (rm + meia) * u[0] - margem * tg[0] * 0.5, cy + (rm + meia) * u[1] - margem * tg[1] * 0.5)
        comp = comp_seta + margem * 1.6
        ponta = (cx + rm * u[0] + comp * tg[0], cy + rm * u[1] + comp * tg[1])
        return Poligono([base0, base1, ponta])
    borda = 0.035 if pequeno else 0.025
    t.pinta(Anel(cx, cy, ri - borda, re_ + borda, a_fim + 1, 292), cor("#14532d"))
    t.pinta(seta(borda), cor("#14532d"))
    verde = degrade_linear(0.1, 0.1, 0.9, 0.9, cor("#6fdc7e"), cor("#1f8f3a"))
    t.pinta(Anel(cx, cy, ri, re_, a_fim, 290), verde)
    t.pinta(seta(0.0), verde)
    if not pequeno:
        # pequeno banco de dados no meio
        t.pinta(Retangulo(0.4, 0.43, 0.6, 0.6), degrade_linear(0.4, 0, 0.6, 0, cor("#5b9bd5"), cor("#1f5aa0")))
        t.pinta(Elipse(0.5, 0.6, 0.1, 0.04), cor("#1f5aa0"))
        t.pinta(Elipse(0.5, 0.43, 0.1, 0.04), cor("#9cc7f0"))
        t.pinta(Anel(0.5, 0.515, 0.095, 0.105, 20, 160), cor("#9cc7f0"))


def desenha_impressora(t, pequeno):
    contorno = cor("#2b323b")
    # folha que entra por trás
    t.pinta(Retangulo(0.25, 0.06, 0.75, 0.42), contorno)
    t.pinta(Retangulo(0.28, 0.09, 0.72, 0.42), cor("#ffffff"))
    # corpo
    t.pinta(Retangulo(0.05, 0.34, 0.95, 0.76, 0.08), contorno)
    t.pinta(Retangulo(0.08, 0.37, 0.92, 0.73, 0.06),
            degrade_linear(0, 0.37, 0, 0.73, cor("#c9d1da"), cor("#6b7785")))
    t.pinta(Retangulo(0.2, 0.41, 0.8, 0.46), cor("#2b323b"))
    t.pinta(Circulo(0.83, 0.52, 0.045 if pequeno else 0.035), cor("#39d353"))
    # folha impressa saindo pela frente
    t.pinta(Retangulo(0.2, 0.58, 0.8, 0.95), contorno)
    t.pinta(Retangulo(0.23, 0.61, 0.77, 0.92), cor("#ffffff"))
    linhas = (0.7, 0.82) if pequeno else (0.68, 0.75, 0.82)
    for y in linhas:
        t.pinta(Retangulo(0.29, y, 0.71 if y < 0.8 else 0.58, y + (0.05 if pequeno else 0.03)), cor("#5a6b80"))


def desenha_norvane(t, pequeno):
    t.pinta(Retangulo(0.04, 0.04, 0.96, 0.96, 0.2), cor("#08244f"))
    t.pinta(Retangulo(0.07, 0.07, 0.93, 0.93, 0.18),
            degrade_linear(0.1, 0.1, 0.9, 0.9, cor("#2f8ff0"), cor("#0b3a85")))
    # N inclinado
    incl = 0.1
    def p(x, y):
        return (x + incl * (0.5 - y), y)
    haste = 0.15 if pequeno else 0.13
    topo, base = 0.2, 0.72 if not pequeno else 0.78
    xe, xd = 0.24, 0.76 - haste
    branco = cor("#ffffff")
    t.pinta(Poligono([p(xe, topo), p(xe + haste, topo), p(xe + haste, base), p(xe, base)]), branco)
    t.pinta(Poligono([p(xd, topo), p(xd + haste, topo), p(xd + haste, base), p(xd, base)]), branco)
    t.pinta(Poligono([p(xe, topo), p(xe + haste, topo), p(xd + haste, base), p(xd, base)]), branco)
    if not pequeno:
        t.pinta(Retangulo(0.2, 0.78, 0.8, 0.84, 0.03), cor("#ff9f1c"))


def desenha_interrogacao(t, pequeno, fundo=True):
    if fundo:
        t.pinta(Circulo(0.5, 0.5, 0.48), cor("#b85400"))
        t.pinta(Circulo(0.5, 0.5, 0.455), degrade_radial(0.4, 0.35, 0.62, cor("#fff176"), cor("#ff8f00")))
        t.pinta(Elipse(0.4, 0.27, 0.22, 0.12), cor("#ffffff", 0.35))
    azul = cor("#1a237e")
    if pequeno:
        larg, r, cy = 0.15, 0.15, 0.35
    else:
        larg, r, cy = 0.105, 0.16, 0.35
    t.pinta(Anel(0.5, cy, r - larg / 2, r + larg / 2, 165, 450), azul)
    x0 = 0.5 + r * math.cos(math.radians(165))
    y0 = cy + r * math.sin(math.radians(165))
    t.pinta(Circulo(x0, y0, larg / 2), azul)
    t.pinta(Traco(0.5, cy + r, 0.5, 0.62, larg), azul)
    t.pinta(Circulo(0.5, 0.8, larg * 0.62), azul)


def desenha_exclusao(t, pequeno):
    a, b = 0.2, 0.8
    larg_f, larg = (0.34, 0.22) if pequeno else (0.27, 0.17)
    escuro = cor("#7f0000")
    for x0, y0, x1, y1 in ((a, a, b, b), (b, a, a, b)):
        t.pinta(Traco(x0, y0, x1, y1, larg_f), escuro)
    vermelho = degrade_linear(0.2, 0.2, 0.8, 0.8, cor("#ff6b6b"), cor("#c62828"))
    for x0, y0, x1, y1 in ((a, a, b, b), (b, a, a, b)):
        t.pinta(Traco(x0, y0, x1, y1, larg), vermelho)


def desenha_explosao(t, pequeno, quadro):
    escala = (0.22, 0.38, 0.55, 0.72, 0.86, 0.93, 0.97, 1.0)[quadro - 1]
    opac = (1.0, 1.0, 1.0, 1.0, 1.0, 0.8, 0.5, 0.25)[quadro - 1]
    fumaca = max(0.0, (quadro - 4) / 4.0)     # 0 até o quadro 4, depois cresce
    R = 0.48 * escala
    rng = random.Random(7)
    externo = mistura(cor("#e53935"), cor("#6d6d6d"), fumaca)
    medio = mistura(cor("#ff9100"), cor("#9e9e9e"), fumaca)
    nucleo = mistura(cor("#ffee58"), cor("#bdbdbd"), fumaca)
    t.pinta(estrela(0.5, 0.5, R, R * 0.6, 11, rng, 0.18, 5), externo, opac)
    t.pinta(estrela(0.5, 0.5, R * 0.74, R * 0.45, 9, rng, 0.15, 20), medio, opac)
    t.pinta(Circulo(0.5, 0.5, R * 0.38), nucleo, opac)
    if quadro <= 4:
        t.pinta(Circulo(0.5, 0.5, R * 0.16), cor("#ffffff"), opac)
    if quadro >= 3:
        rng2 = random.Random(11)
        for _ in range(6 if pequeno else 9):
            a = rng2.random() * 2 * math.pi
            d = R * (1.02 + 0.12 * rng2.random())
            r = (0.045 if pequeno else 0.03) * (1.0 + rng2.random() * 0.5)
            x, y = 0.5 + d * math.cos(a), 0.5 + d * math.sin(a)
            if r < x < 1 - r and r < y < 1 - r:
                t.pinta(Circulo(x, y, r), externo, opac)


PIPS = {
    1: [(0.5, 0.5)],
    2: [(0, 0), (1, 1)],
    3: [(0, 0), (0.5, 0.5), (1, 1)],
    4: [(0, 0), (1, 0), (0, 1), (1, 1)],
    5: [(0, 0), (1, 0), (0.5, 0.5), (0, 1), (1, 1)],
    6: [(0, 0), (1, 0), (0, 0.5), (1, 0.5), (0, 1), (1, 1)],
}


def desenha_dado(t, pequeno, face):
    t.pinta(Retangulo(0.05, 0.05, 0.95, 0.95, 0.18), cor("#3a3a3a"))
    t.pinta(Retangulo(0.09, 0.09, 0.91, 0.91, 0.14),
            degrade_linear(0.1, 0.1, 0.9, 0.9, cor("#ffffff"), cor("#d5d5d5")))
    lo, hi = (0.27, 0.73) if pequeno else (0.28, 0.72)
    r = 0.095 if pequeno else 0.085
    for px, py in PIPS[face]:
        x = lo + (hi - lo) * px
        y = lo + (hi - lo) * py
        if face == 1:
            t.pinta(Circulo(x, y, 0.14), cor("#c62828"))
        else:
            t.pinta(Circulo(x, y, r), cor("#111111"))


# ---------------------------------------------------------------------------
# Gravação: ICO (BMP 32 bits + máscara AND) e PNG
# ---------------------------------------------------------------------------

def imagem_bmp_ico(linhas):
    n = len(linhas)
    cor_bytes = bytearray()
    for linha in reversed(linhas):                 # DIB: de baixo para cima
        for r, g, b, a in linha:
            cor_bytes += bytes((b, g, r, a))
    passo = ((n + 31) // 32) * 4
    mascara = bytearray()
    for linha in reversed(linhas):
        bits = bytearray(passo)
        for x, (_, _, _, a) in enumerate(linha):
            if a < 128:                            # 1 = transparente
                bits[x >> 3] |= 0x80 >> (x & 7)
        mascara += bits
    cabecalho = struct.pack("<IiiHHIIiiII", 40, n, 2 * n, 1, 32, 0,
                            len(cor_bytes) + len(mascara), 0, 0, 0, 0)
    return bytes(cabecalho + cor_bytes + mascara)


def grava_ico(caminho, imagens):
    """imagens: lista de (lado, linhas)."""
    dados = [imagem_bmp_ico(linhas) for _, linhas in imagens]
    saida = bytearray(struct.pack("<HHH", 0, 1, len(imagens)))
    deslocamento = 6 + 16 * len(imagens)
    for (lado, _), d in zip(imagens, dados):
        saida += struct.pack("<BBBBHHII", lado % 256, lado % 256, 0, 0, 1, 32,
                             len(d), deslocamento)
        deslocamento += len(d)
    for d in dados:
        saida += d
    with open(caminho, "wb") as f:
        f.write(saida)


def grava_png(caminho, linhas):
    altura, largura = len(linhas), len(linhas[0])
    bruto = bytearray()
    for linha in linhas:
        bruto.append(0)
        for px in linha:
            bruto += bytes(px)
    def bloco(tipo, dados):
        return (struct.pack(">I", len(dados)) + tipo + dados +
                struct.pack(">I", zlib.crc32(tipo + dados) & 0xFFFFFFFF))
    png = (b"\x89PNG\r\n\x1a\n" +
           bloco(b"IHDR", struct.pack(">IIBBBBB", largura, altura, 8, 6, 0, 0, 0)) +
           bloco(b"IDAT", zlib.compress(bytes(bruto), 9)) +
           bloco(b"IEND", b""))
    with open(caminho, "wb") as f:
        f.write(png)


def renderiza(desenho, lado, sub=4, **args):
    t = Tela(lado, sub)
    desenho(t, lado <= 16, **args)
    return t.pixels()


def icone(nome, desenho, **args):
    imagens = [(32, renderiza(desenho, 32, **args)), (16, renderiza(desenho, 16, **args))]
    caminho = os.path.join(PASTA_ICONES, nome)
    grava_ico(caminho, imagens)
    return caminho


def gera_icones():
    feitos = []
    feitos.append(icone("Alteração.Ico", desenha_lapis))
    feitos.append(icone("Processamento.Ico", desenha_ampulheta))
    feitos.append(icone("Relógio.Ico", desenha_relogio))
    feitos.append(icone("Recuperar Backup.Ico", desenha_recuperar))
    feitos.append(icone("Impressão.Ico", desenha_impressora))
    feitos.append(icone("Norvane Informática.Ico", desenha_norvane))
    feitos.append(icone("Quizora.Ico", desenha_interrogacao))
    feitos.append(icone("Exclusão.ico", desenha_exclusao))
    for q in range(1, 9):
        feitos.append(icone("Explosão %d.ico" % q, desenha_explosao, quadro=q))
    for f in range(1, 7):
        feitos.append(icone("Dado %d.Ico" % f, desenha_dado, face=f))
    png = os.path.join(PASTA_ICONES, "Quizora.png")
    t = Tela(128, 4)
    desenha_interrogacao(t, False)
    grava_png(png, t.pixels())
    feitos.append(png)
    feitos += gera_icones_area_de_trabalho()
    return feitos


PASTA_LINUX_ICONES = os.path.join(RAIZ, "resources", "linux", "icones")


def svg_interrogacao():
    """O desenho de desenha_interrogacao(fundo=True, pequeno=False) em SVG, num quadro de 256."""
    L = 256.0
    def c(texto):
        return "#" + texto.lstrip("#")
    larg, r, cy = 0.105, 0.16, 0.35
    a0, a1 = math.radians(165), math.radians(450)
    x0, y0 = 0.5 + r * math.cos(a0), cy + r * math.sin(a0)
    x1, y1 = 0.5 + r * math.cos(a1), cy + r * math.sin(a1)
    f = lambda v: "%.2f" % (v * L)
    return "\n".join([
        '<?xml version="1.0" encoding="UTF-8"?>',
        '<svg xmlns="http://www.w3.org/2000/svg" width="256" height="256" viewBox="0 0 256 256">',
        '  <defs>',
        '    <radialGradient id="dourado" gradientUnits="userSpaceOnUse" cx="%s" cy="%s" r="%s">'
        % (f(0.4), f(0.35), f(0.62)),
        '      <stop offset="0" stop-color="%s"/>' % c("fff176"),
        '      <stop offset="1" stop-color="%s"/>' % c("ff8f00"),
        '    </radialGradient>',
        '  </defs>',
        '  <circle cx="%s" cy="%s" r="%s" fill="%s"/>' % (f(0.5), f(0.5), f(0.48), c("b85400")),
        '  <circle cx="%s" cy="%s" r="%s" fill="url(#dourado)"/>' % (f(0.5), f(0.5), f(0.455)),
        '  <ellipse cx="%s" cy="%s" rx="%s" ry="%s" fill="#ffffff" fill-opacity="0.35"/>'
        % (f(0.4), f(0.27), f(0.22), f(0.12)),
        '  <g fill="none" stroke="%s" stroke-width="%s">' % (c("1a237e"), f(larg)),
        '    <path d="M %s %s A %s %s 0 1 1 %s %s"/>' % (f(x0), f(y0), f(r), f(r), f(x1), f(y1)),
        '    <path d="M %s %s L %s %s" stroke-linecap="round"/>' % (f(0.5), f(cy + r), f(0.5), f(0.62)),
        '  </g>',
        '  <g fill="%s">' % c("1a237e"),
        '    <circle cx="%s" cy="%s" r="%s"/>' % (f(x0), f(y0), f(larg / 2)),
        '    <circle cx="%s" cy="%s" r="%s"/>' % (f(0.5), f(0.8), f(larg * 0.62)),
        '  </g>',
        '</svg>',
        ''])


def gera_icones_area_de_trabalho():
    """O ícone do menu de aplicativos, no tema hicolor: 48, 128 e 256 pixels e o SVG."""
    os.makedirs(PASTA_LINUX_ICONES, exist_ok=True)
    feitos = []
    for lado in (48, 128, 256):
        caminho = os.path.join(PASTA_LINUX_ICONES, "quizora-%d.png" % lado)
        t = Tela(lado, 4)
        desenha_interrogacao(t, False)
        grava_png(caminho, t.pixels())
        feitos.append(caminho)
    caminho = os.path.join(PASTA_LINUX_ICONES, "quizora.svg")
    with open(caminho, "w", encoding="utf-8") as saida:
        saida.write(svg_interrogacao())
    feitos.append(caminho)
    return feitos


# ---------------------------------------------------------------------------
# Imagens de fundo (1024x768), desenhadas pixel a pixel
# ---------------------------------------------------------------------------

LARGURA, ALTURA = 1024, 768


def faixa(paradas, t):
    """paradas: lista de (posição, (r, g, b)) em ordem; devolve a cor em t."""
    if t <= paradas[0][0]:
        return paradas[0][1]
    for (p0, c0), (p1, c1) in zip(paradas, paradas[1:]):
        if t <= p1:
            u = (t - p0) / (p1 - p0)
            return tuple(a + (b - a) * u for a, b in zip(c0, c1))
    return paradas[-1][1]


def rgb(texto):
    texto = texto.lstrip("#")
    return tuple(int(texto[i:i + 2], 16) for i in (0, 2, 4))


def ruido_1d(rng, n, oitavas, periodo, amplitude):
    """Ruído de valores suave (soma de oitavas), n amostras."""
    total = [0.0] * n
    per, amp = periodo, amplitude
    for _ in range(oitavas):
        nos = [rng.random() * 2 - 1 for _ in range(n // max(1, int(per)) + 3)]
        for x in range(n):
            p = x / per
            i = int(p)
            f = p - i
            f = f * f * (3 - 2 * f)
            total[x] += amp * (nos[i] + (nos[i + 1] - nos[i]) * f)
        per /= 2.0
        amp /= 2.0
    return total


def suave(a, b, x):
    if x <= a:
        return 0.0
    if x >= b:
        return 1.0
    t = (x - a) / (b - a)
    return t * t * (3 - 2 * t)


class Imagem:
    def __init__(self):
        self.p = [[(0.0, 0.0, 0.0)] * LARGURA for _ in range(ALTURA)]

    def preenche(self, funcao):
        for y in range(ALTURA):
            linha = self.p[y]
            for x in range(LARGURA):
                linha[x] = funcao(x, y)

    def camada(self, topo, c_topo, c_base, altura_grad=180.0, x_luz=None):
        """Silhueta: tudo abaixo de topo[x] recebe a cor (degradê vertical)."""
        for x in range(LARGURA):
            h = topo[x]
            y0 = max(0, int(h))
            for y in range(y0, ALTURA):
                cobre = min(1.0, y + 1 - h) if y == y0 else 1.0
                if cobre <= 0:
                    continue
                u = min(1.0, (y - h) / altura_grad)
                c = tuple(a + (b - a) * u for a, b in zip(c_topo, c_base))
                if cobre < 1.0:
                    v = self.p[y][x]
                    c = tuple(a + (b - a) * cobre for a, b in zip(v, c))
                self.p[y][x] = c

    def mistura_ponto(self, x, y, c, alfa):
        if 0 <= x < LARGURA and 0 <= y < ALTURA and alfa > 0:
            v = self.p[y][x]
            self.p[y][x] = tuple(a + (b - a) * alfa for a, b in zip(v, c))

    def disco(self, cx, cy, r, c, alfa=1.0, suavidade=1.0):
        for y in range(max(0, int(cy - r - 2)), min(ALTURA, int(cy + r + 3))):
            for x in range(max(0, int(cx - r - 2)), min(LARGURA, int(cx + r + 3))):
                d = math.hypot(x + 0.5 - cx, y + 0.5 - cy)
                cobre = 1.0 - suave(r - suavidade, r + suavidade, d)
                self.mistura_ponto(x, y, c, cobre * alfa)

    def brilho(self, cx, cy, sigma, c, forca):
        r = int(sigma * 3)
        for y in range(max(0, int(cy - r)), min(ALTURA, int(cy + r))):
            for x in range(max(0, int(cx - r)), min(LARGURA, int(cx + r))):
                d2 = (x - cx) ** 2 + (y - cy) ** 2
                self.mistura_ponto(x, y, c, forca * math.exp(-d2 / (2 * sigma * sigma)))

    def ppm(self, caminho):
        saida = bytearray()
        for y in range(ALTURA):
            for x, (r, g, b) in enumerate(self.p[y]):
                # pontilhado leve e determinístico, contra faixas no degradê
                d = (((x * 73856093) ^ (y * 19349663)) & 255) / 255.0 - 0.5
                saida += bytes((max(0, min(255, int(r + d + 0.5))),
                                max(0, min(255, int(g + d + 0.5))),
                                max(0, min(255, int(b + d + 0.5)))))
        with open(caminho, "wb") as f:
            f.write(b"P6\n%d %d\n255\n" % (LARGURA, ALTURA))
            f.write(saida)


def fundo_amanhecer():
    """Amanhecer sobre montanhas, com lago."""
    img = Imagem()
    horizonte = 0.7 * ALTURA
    ceu = [(0.0, rgb("#1b2a5e")), (0.3, rgb("#4b4f9a")), (0.55, rgb("#c47a8c")),
           (0.68, rgb("#f6a26f")), (0.75, rgb("#ffd59e"))]
    img.preenche(lambda x, y: faixa(ceu, y / horizonte * 0.75))
    sx, sy = 0.24 * LARGURA, 0.42 * ALTURA
    img.brilho(sx, sy, 150, rgb("#ffc58a"), 0.55)
    img.disco(sx, sy, 40, rgb("#fff4cf"), 1.0, 1.2)
    rng = random.Random(101)
    camadas = [
        (0.52, 80, rgb("#9d86b4"), rgb("#b89ab8")),
        (0.58, 70, rgb("#6d5f97"), rgb("#8a76a6")),
        (0.64, 55, rgb("#3c3a68"), rgb("#4a4876")),
    ]
    for base, amp, c0, c1 in camadas:
        topo = ruido_1d(rng, LARGURA, 5, 260.0, 1.0)
        alturas = [base * ALTURA - amp * (0.6 + v) for v in topo]
        img.camada(alturas, c0, c1, 200.0)
    # lago: reflexo ondulado do que está acima
    y_lago = int(0.72 * ALTURA)
    copia = [list(l) for l in img.p[:y_lago]]
    for y in range(y_lago, ALTURA):
        prof = (y - y_lago) / (ALTURA - y_lago)
        ys = max(0, min(y_lago - 1, 2 * y_lago - y - 1))
        for x in range(LARGURA):
            xs = int(x + 3.0 * math.sin(y * 0.35 + x * 0.01))
            xs = max(0, min(LARGURA - 1, xs))
            r, g, b = copia[ys][xs]
            escurece = 0.78 - 0.25 * prof
            img.p[y][x] = (r * escurece + 10 * prof, g * escurece + 18 * prof, b * escurece + 40 * prof)
    # brilhos na água
    rng2 = random.Random(5)
    for _ in range(260):
        x = int(sx + rng2.gauss(0, 60))
        y = int(y_lago + 4 + abs(rng2.gauss(0, 70)))
        comp = rng2.randint(4, 16)
        for dx in range(comp):
            img.mistura_ponto(x + dx, y, rgb("#ffe2b0"), 0.45 * (1 - dx / comp))
    # margem escura em primeiro plano
    margem = ruido_1d(random.Random(9), LARGURA, 4, 300.0, 1.0)
    img.camada([ALTURA - 40 - 30 * (v + 0.5) for v in margem], rgb("#1c1f3a"), rgb("#101226"), 60.0)
    return img


def fundo_colinas():
    """Colinas verdes sob céu azul com nuvens."""
    img = Imagem()
    ceu = [(0.0, rgb("#3d8fe0")), (0.6, rgb("#8cc8f5")), (1.0, rgb("#d8f0ff"))]
    horizonte = 0.6 * ALTURA
    img.preenche(lambda x, y: faixa(ceu, y / horizonte))
    img.brilho(0.15 * LARGURA, 0.12 * ALTURA, 120, rgb("#fffbe0"), 0.6)
    img.disco(0.15 * LARGURA, 0.12 * ALTURA, 38, rgb("#fffdf0"), 1.0, 1.5)
    rng = random.Random(202)
    nuvens = []
    for cx, cy, tam in ((0.42, 0.14, 1.0), (0.75, 0.24, 1.2), (0.2, 0.34, 0.8), (0.92, 0.08, 0.7)):
        for _ in range(9):
            nuvens.append((cx * LARGURA + rng.gauss(0, 55 * tam), cy * ALTURA + rng.gauss(0, 12 * tam),
                           (24 + rng.random() * 26) * tam))
    for nx, ny, nr in nuvens:
        x0, x1 = int(nx - nr * 1.6), int(nx + nr * 1.6)
        y0, y1 = int(ny - nr * 1.2), int(ny + nr * 1.2)
        for y in range(max(0, y0), min(ALTURA, y1)):
            for x in range(max(0, x0), min(LARGURA, x1)):
                d = math.hypot((x - nx) / 1.4, y - ny) / nr
                a = 1.0 - suave(0.6, 1.0, d)
                if a > 0:
                    sombra = 0.9 + 0.1 * suave(ny + nr, ny - nr, y)
                    img.mistura_ponto(x, y, (255 * sombra, 255 * sombra, 255 * sombra), 0.55 * a)
    camadas = [
        (0.62, 40, 380.0, rgb("#93c98d"), rgb("#7fb97c")),
        (0.72, 55, 330.0, rgb("#5fae5b"), rgb("#4a944a")),
        (0.86, 60, 420.0, rgb("#3f9a3f"), rgb("#2c702f")),
    ]
    rng = random.Random(303)
    topos = []
    for base, amp, per, c0, c1 in camadas:
        ond = ruido_1d(rng, LARGURA, 2, per, 1.0)
        alturas = [base * ALTURA - amp * v for v in ond]
        topos.append(alturas)
        img.camada(alturas, c0, c1, 260.0)
    # árvores na colina do meio
    meio = topos[1]
    rng3 = random.Random(17)
    for _ in range(11):
        x = int(rng3.random() * (LARGURA - 40)) + 20
        base_y = meio[x] + 14
        if base_y > topos[2][x] - 8:
            continue
        alt = 20 + rng3.random() * 14
        for y in range(int(base_y - 6), int(base_y + 4)):
            for dx in (-1, 0, 1):
                img.mistura_ponto(x + dx, y, rgb("#5b3a1e"), 1.0)
        img.disco(x, base_y - alt * 0.6, alt * 0.45, rgb("#2e6b2f"), 1.0, 1.2)
        img.disco(x - alt * 0.12, base_y - alt * 0.72, alt * 0.22, rgb("#3f8a3f"), 0.8, 1.2)
    # flores miúdas no primeiro plano
    rng4 = random.Random(23)
    for _ in range(500):
        x = int(rng4.random() * LARGURA)
        y = int(topos[2][x] + 20 + rng4.random() * (ALTURA - topos[2][x] - 20))
        c = rng4.choice((rgb("#ffeb3b"), rgb("#ffffff"), rgb("#f8bbd0")))
        img.mistura_ponto(x, y, c, 0.85)
        img.mistura_ponto(x + 1, y, c, 0.5)
    return img


def fundo_noite():
    """Noite estrelada com lua e colinas escuras."""
    img = Imagem()
    ceu = [(0.0, rgb("#03071c")), (0.5, rgb("#101a48")), (0.8, rgb("#2d2a66")), (1.0, rgb("#4a3570"))]
    horizonte = 0.8 * ALTURA
    img.preenche(lambda x, y: faixa(ceu, y / horizonte))
    # faixa da via láctea
    rng = random.Random(404)
    for _ in range(5000):
        t = rng.random()
        x = t * LARGURA
        y = 0.05 * ALTURA + t * 0.45 * ALTURA + rng.gauss(0, 45)
        img.mistura_ponto(int(x), int(y), rgb("#8a8fd0"), 0.08)
    for _ in range(650):
        x, y = rng.random() * LARGURA, rng.random() * 0.75 * ALTURA
        forca = rng.random() ** 2.5
        r = 0.6 + 1.1 * forca
        c = rng.choice((rgb("#ffffff"), rgb("#fff3d6"), rgb("#d6e4ff")))
        img.disco(x, y, r, c, 0.45 + 0.55 * forca, 0.8)
    mx, my = 0.78 * LARGURA, 0.2 * ALTURA
    img.brilho(mx, my, 90, rgb("#c9d3ff"), 0.35)
    # lua crescente: o disco menos um disco deslocado
    for y in range(int(my - 46), int(my + 46)):
        for x in range(int(mx - 46), int(mx + 46)):
            dentro = 1.0 - suave(41, 43, math.hypot(x + 0.5 - mx, y + 0.5 - my))
            fora = suave(37, 39, math.hypot(x + 0.5 - (mx - 20), y + 0.5 - (my - 10)))
            img.mistura_ponto(x, y, rgb("#f6f1d3"), dentro * fora)
    rng = random.Random(505)
    for base, amp, per, c0, c1 in ((0.78, 60, 300.0, rgb("#17183f"), rgb("#101130")),
                                   (0.88, 50, 380.0, rgb("#0b0c24"), rgb("#060716"))):
        ond = ruido_1d(rng, LARGURA, 3, per, 1.0)
        img.camada([base * ALTURA - amp * v for v in ond], c0, c1, 150.0)
    return img


def fundo_praia():
    """Mar calmo, praia e ilha ao longe, em dia claro."""
    img = Imagem()
    horizonte = int(0.5 * ALTURA)
    ceu = [(0.0, rgb("#2f7fd1")), (0.7, rgb("#86c3f2")), (1.0, rgb("#d4eefc"))]
    mar = [(0.0, rgb("#1c5fa8")), (0.55, rgb("#1e88b5")), (1.0, rgb("#3fc1b9"))]
    praia_y = 0.8 * ALTURA
    def base(x, y):
        if y < horizonte:
            return faixa(ceu, y / horizonte)
        return faixa(mar, (y - horizonte) / (praia_y - horizonte))
    img.preenche(base)
    img.brilho(0.82 * LARGURA, 0.13 * ALTURA, 130, rgb("#fffbe6"), 0.6)
    img.disco(0.82 * LARGURA, 0.13 * ALTURA, 36, rgb("#fffef5"), 1.0, 1.5)
    # ilha à esquerda
    rng = random.Random(606)
    ond = ruido_1d(rng, LARGURA, 3, 90.0, 1.0)
    ilha = []
    for x in range(LARGURA):
        u = (x - 0.2 * LARGURA) / (0.16 * LARGURA)
        alt = max(0.0, 1 - u * u) * (48 + 8 * ond[x])
        ilha.append(horizonte - alt if alt > 0.5 else ALTURA + 10)
    for x in range(LARGURA):
        h = ilha[x]
        if h >= horizonte:
            continue
        for y in range(max(0, int(h)), horizonte):
            cobre = min(1.0, y + 1 - h)
            img.mistura_ponto(x, y, faixa([(0, rgb("#3f7f5a")), (1, rgb("#5d9c78"))], (y - h) / 40.0), cobre)
    # brilho do sol sobre o mar e reflexos
    rng2 = random.Random(7)
    for _ in range(900):
        y = horizonte + int(abs(rng2.gauss(0, 1)) * (praia_y - horizonte) * 0.5)
        x = int(rng2.gauss(0.82 * LARGURA, 40 + (y - horizonte) * 0.6))
        comp = rng2.randint(3, 14)
        for dx in range(comp):
            img.mistura_ponto(x + dx, y, rgb("#ffffff"), 0.35 * (1 - dx / comp))
    # areia e espuma
    for x in range(LARGURA):
        borda = praia_y + 10 * math.sin(x / 70.0) + 5 * math.sin(x / 23.0 + 1.3)
        for y in range(int(borda) - 6, ALTURA):
            if y < 0:
                continue
            if y < borda:
                a = suave(borda - 6, borda, y + 0.5)
                img.mistura_ponto(x, y, rgb("#f4fbff"), 0.9 * a)
            else:
                u = (y - borda) / (ALTURA - borda + 1)
                c = faixa([(0, rgb("#e9d3a0")), (0.15, rgb("#f3e0b5")), (1, rgb("#e2bf86"))], u)
                img.p[y][x] = c
        # faixa molhada logo após a espuma
        for y in range(int(borda), min(ALTURA, int(borda) + 14)):
            img.mistura_ponto(x, y, rgb("#c9ad7a"), 0.35 * (1 - (y - borda) / 14.0))
    # grãos de areia
    rng3 = random.Random(31)
    for _ in range(4000):
        x = int(rng3.random() * LARGURA)
        y = int(praia_y + 20 + rng3.random() * (ALTURA - praia_y - 20))
        img.mistura_ponto(x, y, rgb("#b8955c"), 0.25)
    return img


def acha_imagemagick():
    """Devolve o comando do ImageMagick (lista) ou None.  Confere a versão, para
    não confundir com outro programa chamado convert."""
    candidatos = []
    for nome in ("magick", "convert"):
        caminho = shutil.which(nome)
        if caminho:
            candidatos.append(caminho)
    candidatos += ["/usr/bin/convert", "/usr/bin/convert-im6.q16", "/usr/bin/magick"]
    for c in candidatos:
        if not os.path.exists(c):
            continue
        try:
            saida = subprocess.run([c, "-version"], capture_output=True, text=True, timeout=30).stdout
        except (OSError, subprocess.SubprocessError):
            continue
        if saida.startswith("Version: ImageMagick"):
            return [c]
    return None


def gera_fundos():
    im = acha_imagemagick()
    if im is None:
        print("AVISO: ImageMagick não encontrado; as imagens de fundo não foram regeradas.",
              file=sys.stderr)
        return []
    feitos = []
    temp = tempfile.mkdtemp(prefix="quizora_fundos_")
    try:
        for n, desenho in enumerate((fundo_amanhecer, fundo_colinas, fundo_noite, fundo_praia), 1):
            ppm = os.path.join(temp, "fundo%d.ppm" % n)
            desenho().ppm(ppm)
            destino = os.path.join(PASTA_ICONES, "Fundo %d.jpg" % n)
            subprocess.run(im + [ppm, "-strip", "-sampling-factor", "4:2:0", "-quality", "88",
                                 "-interlace", "none", destino], check=True)
            feitos.append(destino)
    finally:
        shutil.rmtree(temp, ignore_errors=True)
    return feitos


# ---------------------------------------------------------------------------
# Sons
# ---------------------------------------------------------------------------

TAXA = 22050


def grava_wav(caminho, amostras):
    pico = max(1e-9, max(abs(a) for a in amostras))
    ganho = 0.8 / pico
    dados = array("h", (int(round(a * ganho * 32767)) for a in amostras))
    if sys.byteorder == "big":
        dados.byteswap()
    with wave.open(caminho, "wb") as w:
        w.setnchannels(1)
        w.setsampwidth(2)
        w.setframerate(TAXA)
        w.writeframes(dados.tobytes())


def som_acerto():
    """Arpejo ascendente de sino (dó, mi, sol, dó), cerca de 0,6 s."""
    dur = 0.6
    n = int(TAXA * dur)
    s = [0.0] * n
    notas = [(0.00, 1046.50), (0.09, 1318.51), (0.18, 1567.98), (0.27, 2093.00)]
    for inicio, f in notas:
        i0 = int(inicio * TAXA)
        for i in range(i0, n):
            t = (i - i0) / TAXA
            ataque = min(1.0, t / 0.004)
            env = ataque * math.exp(-t * 7.0)
            v = (math.sin(2 * math.pi * f * t) +
                 0.35 * math.sin(2 * math.pi * 2 * f * t) * math.exp(-t * 10) +
                 0.12 * math.sin(2 * math.pi * 3.01 * f * t) * math.exp(-t * 16))
            s[i] += env * v
    cauda = int(0.06 * TAXA)
    for k in range(cauda):
        s[n - 1 - k] *= k / cauda
    return s


def som_erro():
    """Zumbido grave que desce de 220 Hz a 100 Hz, cerca de 0,6 s."""
    dur = 0.6
    n = int(TAXA * dur)
    s = [0.0] * n
    fase = 0.0
    for i in range(n):
        t = i / TAXA
        f = 220.0 * (100.0 / 220.0) ** (t / dur)
        fase += 2 * math.pi * f / TAXA
        v = 0.0
        h = 1
        while h * f < 5000 and h <= 25:       # dente de serra limitado em banda
            v += math.sin(h * fase) / h
            h += 1
        ataque = min(1.0, t / 0.01)
        fim = min(1.0, (dur - t) / 0.08)
        trem = 0.85 + 0.15 * math.sin(2 * math.pi * 18 * t)
        s[i] = v * ataque * fim * trem
    return s


def gera_sons():
    os.makedirs(PASTA_SONS, exist_ok=True)
    a = os.path.join(PASTA_SONS, "acerto.wav")
    e = os.path.join(PASTA_SONS, "erro.wav")
    grava_wav(a, som_acerto())
    grava_wav(e, som_erro())
    return [a, e]


def main():
    os.makedirs(PASTA_ICONES, exist_ok=True)
    feitos = gera_icones()
    feitos += gera_sons()
    if "--sem-fundos" not in sys.argv[1:]:
        feitos += gera_fundos()
    for f in feitos:
        print(os.path.relpath(f, RAIZ))


if __name__ == "__main__":
    main()

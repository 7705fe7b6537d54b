#!/usr/bin/python3
"""The phones' page in Debian's chromium, headless at 390x844 as a phone: it opens the room's address,
joins with the code, takes Ana's seat, answers the question on her turn, and after a reload gets the seat
back by itself. Exits 77 (skipped) when chromium or its driver is not installed."""
import json
import os
import shutil
import subprocess
import sys
import tempfile
import time

auxiliar, pasta_fotos = sys.argv[1], sys.argv[2]
navegador = shutil.which("chromium") or "/usr/bin/chromium"
driver_bin = shutil.which("chromedriver") or "/usr/bin/chromedriver"
if not os.path.exists(navegador) or not os.path.exists(driver_bin):
    print("SKIP: o chromium do Debian (chromium, chromium-driver) não está instalado; "
          "scripts/dependencias.sh o instala")
    sys.exit(77)
try:
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.by import By
    from selenium.webdriver.support.ui import WebDriverWait
except ImportError:
    print("SKIP: python3-selenium não está instalado; scripts/dependencias.sh o instala")
    sys.exit(77)

os.makedirs(pasta_fotos, exist_ok=True)
sala = subprocess.Popen([auxiliar], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)


def linha_do_auxiliar(limite=60):
    fim = time.time() + limite
    while time.time() < fim:
        linha = sala.stdout.readline()
        if not linha:
            break
        linha = linha.strip()
        if linha.startswith("{"):
            return json.loads(linha)
    raise SystemExit("o programa não respondeu a tempo")


def falha(motivo):
    print("FALHOU:", motivo)
    sys.exit(1)


perfil = tempfile.mkdtemp(prefix="quizora-chromium-")
driver = None
try:
    inicio = linha_do_auxiliar()
    if "erro" in inicio:
        falha(inicio["erro"])
    endereco, codigo = inicio["endereco"], inicio["codigo"]
    if not endereco.startswith("http://127.0.0.1:"):
        falha("a sala não está em loopback: " + endereco)

    opcoes = webdriver.ChromeOptions()
    opcoes.binary_location = navegador
    for flag in ("--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
                 "--disable-background-networking", "--disable-component-update", "--disable-sync",
                 "--window-size=390,844", "--user-data-dir=" + perfil, "--lang=pt-BR"):
        opcoes.add_argument(flag)
    driver = webdriver.Chrome(service=Service(driver_bin), options=opcoes)
    driver.set_window_size(390, 844)
    espera = WebDriverWait(driver, 20)

    def visivel(id_):
        return espera.until(lambda d: d.find_element(By.ID, id_) if d.find_element(By.ID, id_).is_displayed() else None)

    driver.get(endereco)
    campo = visivel("txtCodigo")
    driver.save_screenshot(os.path.join(pasta_fotos, "celular_entrar.png"))
    # A wrong code first: the page says so and stays on the code.
    campo.send_keys("000000" if codigo != "000000" else "111111")
    driver.find_element(By.ID, "cmdEntrar").click()
    espera.until(lambda d: "incorreto" in d.find_element(By.ID, "erroEntrar").text)
    campo = visivel("txtCodigo")
    campo.clear()
    campo.send_keys(codigo)
    driver.find_element(By.ID, "cmdEntrar").click()

    visivel("lugares")
    espera.until(lambda d: len(d.find_elements(By.CSS_SELECTOR, "#listaLugares button")) == 2)
    driver.save_screenshot(os.path.join(pasta_fotos, "celular_lugares.png"))
    botoes = driver.find_elements(By.CSS_SELECTOR, "#listaLugares button")
    if [b.text for b in botoes] != ["Ana", "Bruno"]:
        falha("lugares: " + repr([b.text for b in botoes]))
    botoes[0].click()

    visivel("jogo")
    espera.until(lambda d: "Sua vez" in d.find_element(By.ID, "faixa").text)
    if driver.find_element(By.ID, "papel").text != "Você: Ana":
        falha("papel: " + driver.find_element(By.ID, "papel").text)
    respostas = [b for b in driver.find_elements(By.CSS_SELECTOR, "#respostas button") if b.is_enabled()]
    if len(respostas) != 4:
        falha("respostas tocáveis: %d" % len(respostas))
    largura = driver.execute_script("return document.documentElement.scrollWidth")
    if largura > 390:
        falha("a página passa da largura do celular: %d px" % largura)
    menor = min(b.size["height"] for b in respostas)
    if menor < 48:
        falha("botão de resposta pequeno demais para um dedo: %d px" % menor)
    driver.save_screenshot(os.path.join(pasta_fotos, "celular_pergunta.png"))
    # The narrowest phones in use: 360 pixels, still without sideways scrolling.
    driver.set_window_size(360, 740)
    largura = driver.execute_script("return document.documentElement.scrollWidth")
    if largura > 360:
        falha("a página passa de 360 px: %d px" % largura)
    respostas = [b for b in driver.find_elements(By.CSS_SELECTOR, "#respostas button") if b.is_enabled()]
    respostas[0].click()

    resultado = linha_do_auxiliar()
    if not resultado.get("respondida"):
        falha("o programa não recebeu a resposta")
    espera.until(lambda d: "PARABÉNS" in d.find_element(By.ID, "faixa").text
                 or "ERRADO" in d.find_element(By.ID, "faixa").text
                 or "Vez de Bruno" in d.find_element(By.ID, "faixa").text)
    driver.save_screenshot(os.path.join(pasta_fotos, "celular_resultado.png"))

    # A reload (or a phone back from sleep) keeps the seat without the code.
    driver.refresh()
    espera.until(lambda d: d.find_element(By.ID, "papel").text == "Você: Ana")
    if driver.find_element(By.ID, "entrar").is_displayed():
        falha("a página pediu o código de novo depois de recarregar")
    espera.until(lambda d: "Vez de Bruno" in d.find_element(By.ID, "faixa").text)
    driver.save_screenshot(os.path.join(pasta_fotos, "celular_recarregado.png"))
    print("OK: a página entrou na sala, respondeu (%s) e voltou ao lugar depois de recarregar"
          % ("certa" if resultado.get("certa") else "errada"))
finally:
    if driver is not None:
        driver.quit()
    try:
        sala.stdin.close()
        sala.wait(timeout=20)
    except Exception:
        sala.kill()
    shutil.rmtree(perfil, ignore_errors=True)

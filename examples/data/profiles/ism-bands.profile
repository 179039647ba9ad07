<?xml version="1.0" encoding="UTF-8"?>
<profile id="ism-bands" showInChannelList="1">
  <label lang="en">ISM bands</label>
  <label lang="de">ISM-Bänder</label>
  <description lang="en">Bands designated for industrial, scientific and medical applications. Source: ITU Radio Regulations Article 5, footnotes 5.138 and 5.150.</description>
  <description lang="de">Für industrielle, wissenschaftliche und medizinische Anwendungen bestimmte Bänder. Quelle: ITU Radio Regulations Article 5 (Vollzugsordnung für den Funkdienst), Fußnoten 5.138 und 5.150.</description>
  <begin>6.765 MHz</begin>
  <end>246 GHz</end>
  <channels>
    <range label="6.78 MHz" type="provider" selectable="1">
      <begin>6765 kHz</begin>
      <end>6795 kHz</end>
      <color>#a0522d</color>
      <comment>5.138, subject to special authorisation</comment>
    </range>
    <range label="13.56 MHz" type="provider" selectable="1">
      <begin>13553 kHz</begin>
      <end>13567 kHz</end>
      <color>#cd853f</color>
      <comment>5.150</comment>
    </range>
    <range label="27 MHz" type="provider" selectable="1">
      <begin>26957 kHz</begin>
      <end>27283 kHz</end>
      <color>#cd853f</color>
      <comment>5.150</comment>
    </range>
    <range label="40.68 MHz" type="provider" selectable="1">
      <begin>40.66 MHz</begin>
      <end>40.7 MHz</end>
      <color>#cd853f</color>
      <comment>5.150</comment>
    </range>
    <range label="433 MHz" type="provider" selectable="1">
      <begin>433.05 MHz</begin>
      <end>434.79 MHz</end>
      <color>#a0522d</color>
      <comment>5.138, Region 1, subject to special authorisation in most countries</comment>
    </range>
    <range label="915 MHz" type="provider" selectable="1">
      <begin>902 MHz</begin>
      <end>928 MHz</end>
      <color>#cd853f</color>
      <comment>5.150, Region 2</comment>
    </range>
    <range label="2.45 GHz" type="provider" selectable="1">
      <begin>2400 MHz</begin>
      <end>2500 MHz</end>
      <color>#cd853f</color>
      <comment>5.150</comment>
    </range>
    <range label="5.8 GHz" type="provider" selectable="1">
      <begin>5725 MHz</begin>
      <end>5875 MHz</end>
      <color>#cd853f</color>
      <comment>5.150</comment>
    </range>
    <range label="24 GHz" type="provider" selectable="1">
      <begin>24 GHz</begin>
      <end>24.25 GHz</end>
      <color>#cd853f</color>
      <comment>5.150</comment>
    </range>
    <range label="61 GHz" type="provider" selectable="1">
      <begin>61 GHz</begin>
      <end>61.5 GHz</end>
      <color>#a0522d</color>
      <comment>5.138, subject to special authorisation</comment>
    </range>
    <range label="122 GHz" type="provider" selectable="1">
      <begin>122 GHz</begin>
      <end>123 GHz</end>
      <color>#a0522d</color>
      <comment>5.138, subject to special authorisation</comment>
    </range>
    <range label="245 GHz" type="provider" selectable="1">
      <begin>244 GHz</begin>
      <end>246 GHz</end>
      <color>#a0522d</color>
      <comment>5.138, subject to special authorisation</comment>
    </range>
  </channels>
</profile>

<?xml version="1.0" encoding="UTF-8"?>
<profile id="cb-radio" showInChannelList="1">
  <label lang="en">CB radio</label>
  <label lang="de">CB-Funk</label>
  <description lang="en">The 40 channels of 10 kHz from 26.965 to 27.405 MHz that CEPT and FCC have in common. Source: ECC/DEC/(11)03; 47 CFR 95.963.</description>
  <description lang="de">Die 40 Kanäle zu 10 kHz von 26,965 bis 27,405 MHz, die CEPT und FCC gemeinsam haben. Quelle: ECC/DEC/(11)03; 47 CFR 95.963.</description>
  <begin>26.96 MHz</begin>
  <end>27.41 MHz</end>
  <channels>
    <color>#8d6e63</color>
    <!-- After channels 3, 7, 11, 15 and 19 one step of the raster is left to radio control (3A to 19A, below). Channel
         23 lies above 24 and 25: those two were put into a gap later. -->
    <channels start="26.96 MHz" width="10 kHz" first="1" count="3"/>
    <channels start="27 MHz" width="10 kHz" first="4" count="4"/>
    <channels start="27.05 MHz" width="10 kHz" first="8" count="4"/>
    <channels start="27.1 MHz" width="10 kHz" first="12" count="4"/>
    <channels start="27.15 MHz" width="10 kHz" first="16" count="4"/>
    <channels start="27.2 MHz" width="10 kHz" first="20" count="3"/>
    <channels start="27.25 MHz" width="10 kHz" first="23" count="1"/>
    <channels start="27.23 MHz" width="10 kHz" first="24" count="2"/>
    <channels start="27.26 MHz" width="10 kHz" first="26" count="15"/>
    <range label="3A" type="channel">
      <begin>26.99 MHz</begin>
      <end>27.00 MHz</end>
      <color>#b8b8b8</color>
      <comment>Radio control, no voice</comment>
    </range>
    <range label="7A" type="channel">
      <begin>27.04 MHz</begin>
      <end>27.05 MHz</end>
      <color>#b8b8b8</color>
      <comment>Radio control, no voice</comment>
    </range>
    <range label="11A" type="channel">
      <begin>27.09 MHz</begin>
      <end>27.10 MHz</end>
      <color>#b8b8b8</color>
      <comment>Radio control, no voice</comment>
    </range>
    <range label="15A" type="channel">
      <begin>27.14 MHz</begin>
      <end>27.15 MHz</end>
      <color>#b8b8b8</color>
      <comment>Radio control, no voice</comment>
    </range>
    <range label="19A" type="channel">
      <begin>27.19 MHz</begin>
      <end>27.20 MHz</end>
      <color>#b8b8b8</color>
      <comment>Radio control, no voice</comment>
    </range>
  </channels>
</profile>
